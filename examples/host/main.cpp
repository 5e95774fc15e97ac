// A host in few lines: loads the module, runs the commands of its second argument, waits for their jobs and
// shows the results. The first argument is the folder of the module and the launcher.
#include <iostream>

#include "standalone/output/text_renderer.h"
#include "standalone/session/session.h"

namespace host = genostat::standalone;

struct View : host::SessionView {
  void showNotice(const std::string& text) override { std::cout << text << '\n'; }
  void showDiagnostic(const host::Diagnostic& diagnostic) override {
    std::cerr << diagnostic.message << '\n';
  }
};

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) return 2;
  const std::filesystem::path folder = arguments[1];
  View view;
  host::OutputDocument output;
  output.onItem([](const std::string& item) { std::cout << host::renderItemAsText(item, {}); });
  host::HostFolders folders{std::filesystem::temp_directory_path(), folder, {}};
  host::Session session({folders, true, folder, true, {}, {}}, view, output);
  session.run(std::make_shared<const host::SourceText>(host::SourceText{"arguments", arguments[2]}));
  session.finishJobs();
  return session.close() ? 0 : 1;
}
