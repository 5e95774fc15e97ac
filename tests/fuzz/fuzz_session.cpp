// Whole sessions of any command syntax, the module's command among them: every command is run or refused,
// what is said of it does a terminal no harm, and what it shows can be read back. Jobs are submitted and
// lost: their temporary folder is missing. What a command reads or removes stands in a folder of the process.
#include <algorithm>
#include <cstdint>

#include "entry/genostat.h"
#include "host/language.h"
#include "jobs/geno_stat_algo_manager.h"
#include "standalone/output/text_renderer.h"
#include "standalone/procedures/commands.h"
#include "standalone/services/current.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/command_runner.h"
#include "tests/fuzz/input_file.h"
#include "tests/fuzz/shown_text.h"

namespace {

namespace standalone = genostat::standalone;
using genostat::test::require;
using genostat::test::requireHarmless;

// Commands name files by their names alone.
class InFolder {
 public:
  explicit InFolder(const std::filesystem::path& folder) { std::filesystem::current_path(folder); }
  ~InFolder() { std::filesystem::current_path(before_); }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
};

constexpr char kData[] =
    "Sample,GC,qc_score,adapter_content\na,41.5,90,PASS\nb,47,85,WARN\nc,,70,\"F,\"\nd,50,88,PASS\n";

class Client : public ZORV_Adapter {
 public:
  int isInteractiveClient() const override { return 1; }
  void postClientMessage(std::int32_t, const ZorvwMsg*) override {}
};

class View : public standalone::SessionView {
 public:
  void showNotice(const std::string& text) override { requireHarmless(text); }
  void showDiagnostic(const standalone::Diagnostic& diagnostic) override {
    require(!diagnostic.message.empty(), "a refusal has words");
    requireHarmless(standalone::renderDiagnostic(diagnostic));
  }
};

bool leavesFolder(const standalone::Command& command) {
  return std::any_of(command.tokens.begin(), command.tokens.end(), [](const standalone::Token& token) {
    return token.kind == standalone::Token::Kind::String && token.text.find('/') != std::string::npos;
  });
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  static Client client;
  standalone::setCurrentAdapter(&client);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path folder = genostat::test::writeInput("data.csv", kData).parent_path();
  const InFolder inFolder(folder);
  standalone::setHostFolders({folder / "missing", folder});
  const auto source = std::make_shared<const standalone::SourceText>(
      standalone::SourceText{"fuzz", std::string(genostat::test::textOf(data, size))});
  View view;
  standalone::OutputDocument output;
  standalone::CommandRunner runner(
      standalone::procedureCommands(), [](bool) { GENOSTAT(); }, false, view, output);
  runner.beginText();
  standalone::CommandScanner scanner(source);
  while (const auto item = scanner.next()) {
    if (!leavesFolder(item->command)) runner.run(*item);
  }
  for (const std::string& item : output.items()) {
    requireHarmless(standalone::renderItemAsText(item, {false, false, 80}));
  }
  if (GenoStatAlgoManager* manager = getGenoManagerInstance()) manager->cancellAllJobsPending();
  return 0;
}
