// Commands run by a registry of this test's own.
#include "standalone/session/command_runner.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "host/control.h"
#include "standalone/services/host_folders.h"
#include "standalone/syntax/token_cursor.h"
#include "tests/standalone/session/recorded_view.h"
#include "tests/support/temporary_folder.h"

namespace genostat::standalone {
namespace {

void take(CommandContext& context) {
  TokenCursor cursor(context.command);
  cursor.next();
  context.settings.decimal = ',';
  context.datasets.add({});
  context.output.addText("text", "taken");
  if (cursor.expectKeyword(std::vector<std::string_view>{"WARNED", "READ"}) == 0) {
    context.warn({Diagnostic::Severity::Warning, "warned", {}, {}});
  }
  cursor.expectEnd();
}
[[noreturn]] void refuse(CommandContext&) {
  throw CommandError("refused");
}
[[noreturn]] void breakDown(CommandContext&) {
  throw std::runtime_error("broken");
}
constexpr CommandHandler kCommands[] = {{"TAKE", take}, {"REFUSE", refuse}, {"BREAK DOWN", breakDown}};

class Runner : public testing::Test {
 protected:
  // One line for each thing that is shown, and for each call of the module.
  std::string run(const std::string& text) {
    runner_.beginText();
    CommandScanner scanner(std::make_shared<const SourceText>(SourceText{"t", text}));
    while (const auto item = scanner.next()) {
      runner_.run(*item);
    }
    return std::exchange(view_.shown, {});
  }

  // Reads the command as the module does: a fault of the syntax points behind the name, a refusal at it.
  void runModule(bool interactive) {
    view_.showNotice(interactive ? "module runs" : "module reads");
    const Command& command = *currentCommand();
    TokenCursor cursor(command);
    cursor.next();
    try {
      cursor.expectSymbol('/');
      cursor.expectKeyword(std::vector<std::string_view>{"JOB"});
      cursor.expectEnd();
      if (!interactive) TokenCursor::fail("no client", command.tokens.front());
    } catch (const CommandError& error) {
      reportDiagnostic(error.diagnostic());
    }
  }

  test::RecordedView view_;
  OutputDocument output_;
  CommandRunner runner_{kCommands, [this](bool interactive) { runModule(interactive); }, true, view_,
                        output_};
};

TEST_F(Runner, ShowsHowEachCommandWent) {
  EXPECT_EQ(run("TAKE READ.\nTAKE WARNED."), "warning: warned\n");
  EXPECT_FALSE(runner_.failed());
  const struct {
    const char* text;
    const char* shown;
  } rows[] = {
      {"REFUSE now.\nTAKE WARNED.", "error at REFUSE: refused\nwarning: warned\n"},
      {"BREAK DOWN.", "error at BREAK: the command failed: broken\n"},
      {"TAKE 'open\n\nFETCH.",
       "error at ': this quote is not closed on its line\nerror at FETCH: unknown command "
       "\"FETCH\"\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(run(row.text), row.shown) << row.text;
  }
  EXPECT_TRUE(runner_.failed());
}

TEST_F(Runner, LooksForWhatAJobNeedsBeforeTheModuleTakesIt) {
  const test::TemporaryFolder folder;
  setHostFolders({folder.path(), folder.path(), {}});
  const bool windows = std::filesystem::path::preferred_separator == '\\';
  const char* const launcher = windows ? "statisticspython3.bat" : "statisticspython3.sh";
  const struct {
    std::string text;
    std::string shown;
  } rows[] = {
      // Faults of the syntax go first.
      {"GENOSTAT /JBO.", "module reads\nerror at JBO: unknown keyword \"JBO\"\n"},
      {"GENOSTAT /JOB.", "module reads\nerror at GENOSTAT: the analysis cannot be started: the launcher \"" +
                             platform::pathToUtf8(folder.path() / launcher) + "\" is missing\n"},
      {"GENOSTAT /PRINT.", "module runs\nerror at PRINT: unknown keyword \"PRINT\"\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(run(row.text), row.shown) << row.text;
  }
  run("TAKE READ.\nREFUSE.");
  EXPECT_EQ(GetMetaDataJson(), R"({"job_metadata":{"workbook_id":"4","paragraph_id":"2"}})");
}

TEST_F(Runner, SaysWhatMayFollowAndChangesNothing) {
  run("TAKE READ.");
  const std::size_t shown = output_.items().size();
  const struct {
    const char* text;
    std::vector<std::string> keywords;
  } rows[] = {
      {"TAKE ", {"WARNED", "READ"}},
      {"TAKE READ.\nBREAK ", {"DOWN"}},
      {"GENOSTAT /", {"JOB"}},
      {"REFUSE ", {}},
      {"TAKE 'open", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(runner_.expectedAfter(row.text).keywords, row.keywords) << row.text;
  }
  EXPECT_EQ(output_.items().size(), shown);
  EXPECT_EQ(runner_.datasets().all().size(), 1U);
  EXPECT_FALSE(runner_.failed());
}

}  // namespace
}  // namespace genostat::standalone
