#include "standalone/console/shell/commands.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "common/text/ascii.h"
#include "common/text/printable_text.h"
#include "platform/path_text.h"
#include "standalone/console/shell/help.h"
#include "standalone/console/shell/tables.h"
#include "standalone/language/translation.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/job_progress.h"
#include "standalone/syntax/keyword.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kUsualCases = 10;

std::vector<std::string_view> viewsOf(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

// A shell word with its arguments, as it is run.
struct Call {
  const ShellLine& line;
  std::vector<ShellArgument> arguments;  // the word itself first
  ShellWork& work;
  ShellView& view;

  // Throw CommandError at a part of the line.
  [[noreturn]] void fail(std::string message, const ShellArgument& at, std::string hint = {}) const {
    const char* name = line.typed ? "<shell>" : "<stdin>";
    const auto source = std::make_shared<const SourceText>(SourceText{name, std::string(line.text)});
    SourceRange range{source, at.begin, at.end, line.number};
    throw CommandError(Diagnostic{{}, std::move(message), std::move(range), std::move(hint)});
  }
  [[noreturn]] void failUnknown(const ShellArgument& at, const std::vector<std::string>& known,
                                std::string message) const {
    const auto nearest = nearestKeyword(at.text, viewsOf(known));
    fail(std::move(message), at, nearest ? translated("did you mean {1}?", {*nearest}) : std::string());
  }
};

void showJobs(const Call& call) {
  call.work.followJobs();
  const std::vector<JobStatus> jobs = call.work.jobs().openJobs();
  if (jobs.empty()) return call.view.showAnswer(translated("no job runs or waits"));
  const auto file = findProgressFile(hostFolders().temporary);
  call.view.showAnswer(
      jobsTable(jobs, file ? readJobProgress(*file) : std::nullopt, std::chrono::steady_clock::now()));
}

void cancel(const Call& call) {
  call.work.followJobs();
  const std::vector<std::string> names = call.work.jobNames();
  if (call.arguments.size() < 2) {
    call.fail(translated("cancel needs the name of a job, or all"), call.arguments.front(),
              names.empty() ? translated("no job runs or waits")
                            : translated("there is {1}", {joinAlternatives(viewsOf(names))}));
  }
  const ShellArgument& name = call.arguments[1];
  if (std::ranges::find(names, name.text) == names.end() && common::equalsIgnoreCase(name.text, "all")) {
    if (names.empty()) call.view.showNotice(translated("no job runs or waits"));
    call.work.jobs().cancelAll();
  } else if (!call.work.jobs().cancel(name.text)) {
    call.failUnknown(name, names, translated("no job {1} runs or waits", {quoteForMessage(name.text)}));
  }
  call.work.followJobs();
}

void waitForJobs(const Call& call) {
  if (!call.line.typed) return call.work.finishJobs();
  if (call.work.jobs().openJobs().empty() && call.work.jobs().endedCount() == 0) {
    return call.view.showAnswer(translated("no job runs or waits"));
  }
  call.work.waitForJobs();
}

void showDatasets(const Call& call) {
  auto& datasets = call.work.commands().datasets();
  if (datasets.all().empty()) return call.view.showAnswer(translated("no dataset is open"));
  call.view.showAnswer(datasetsTable(datasets.all(), datasets.active()));
}

[[noreturn]] void failUnknownData(const Call& call, const ShellArgument& name) {
  std::vector<std::string> known = call.work.datasetNames();
  std::ranges::move(call.work.variableNames(), std::back_inserter(known));
  call.failUnknown(
      name, known,
      translated("no dataset and no variable of the active one is called {1}", {quoteForMessage(name.text)}));
}

void showCases(const Call& call) {
  auto& datasets = call.work.commands().datasets();
  const Dataset* dataset = datasets.active();
  const Column* variable = nullptr;
  if (call.arguments.size() > 1) {
    const ShellArgument& name = call.arguments[1];
    const auto found = std::ranges::find_if(datasets.all(), [&](const auto& candidate) {
      return common::equalsIgnoreCase(candidate->name, name.text);
    });
    if (found != datasets.all().end()) {
      dataset = found->get();
    } else {
      variable = dataset != nullptr ? dataset->find(name.text) : nullptr;
      if (variable == nullptr) failUnknownData(call, name);
    }
  }
  if (dataset == nullptr) call.fail(translated("no dataset is active"), call.arguments.front());
  std::size_t count = kUsualCases;
  if (call.arguments.size() > 2) {
    const std::string& text = call.arguments[2].text;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (fault != std::errc() || end != text.data() + text.size() || count == 0) {
      call.fail(translated("expected a number of cases, found {1}", {quoteForMessage(text)}),
                call.arguments[2]);
    }
  }
  call.view.document().beginCommand("<shell>");
  call.view.document().addTable("SHOW", casesTable(*dataset, variable, count));
}

void writeOutput(const Call& call) {
  static const std::vector<std::string> forms = {"html", "json", "text"};
  if (call.arguments.size() < 3) {
    call.fail(translated("output needs a form and the name of a file"), call.arguments.front(),
              "output html report.html");
  }
  const auto form = matchKeyword(call.arguments[1].text, viewsOf(forms));
  if (!form) {
    call.failUnknown(
        call.arguments[1], forms,
        translated("expected html, json or text, found {1}", {quoteForMessage(call.arguments[1].text)}));
  }
  constexpr OutputFormat kForms[] = {OutputFormat::Html, OutputFormat::Json, OutputFormat::Text};
  try {
    call.view.writeReport(call.arguments[2].text, kForms[*form], translated("Results"));
  } catch (const std::runtime_error& error) {
    call.fail(error.what(), call.arguments[2]);
  }
  call.view.showNotice(translated("written: {1}", {common::shownName(call.arguments[2].text)}));
}

void runFile(const Call& call) {
  if (call.arguments.size() < 2)
    call.fail(translated("run needs the name of a file"), call.arguments.front());
  TextFile file = readTextFile(platform::pathFromUtf8(call.arguments[1].text));
  if (!file.error.empty()) call.fail(file.error, call.arguments[1]);
  call.work.run({call.arguments[1].text, std::move(file.text)});
  if (call.work.isStopped()) call.view.showNotice(translated("stopped; the rest of the file has not run"));
}

void help(const Call& call) {
  if (call.arguments.size() < 2) return call.view.showText(helpOverview());
  // A command's name may be two words.
  std::string topic = call.arguments[1].text;
  for (std::size_t i = 2; i < call.arguments.size(); ++i) {
    topic += ' ' + call.arguments[i].text;
  }
  const std::string text = helpOn(topic);
  if (!text.empty()) return call.view.showText(text);
  const ShellArgument whole{topic, call.arguments[1].begin, call.arguments.back().end};
  call.failUnknown(whole, helpTopics(), translated("there is no help on {1}", {quoteForMessage(topic)}));
}

struct Action {
  ShellVerb verb;
  std::size_t mostArguments;
  void (*run)(const Call& call);  // null: leaves the shell
};

constexpr std::array kActions = {
    Action{ShellVerb::Jobs, 0, showJobs},    Action{ShellVerb::Cancel, 1, cancel},
    Action{ShellVerb::Wait, 0, waitForJobs}, Action{ShellVerb::Datasets, 0, showDatasets},
    Action{ShellVerb::Show, 2, showCases},   Action{ShellVerb::Output, 2, writeOutput},
    Action{ShellVerb::Run, 1, runFile},      Action{ShellVerb::Help, std::string::npos, help},
    Action{ShellVerb::Quit, 0, nullptr},
};
static_assert(kActions.size() == static_cast<std::size_t>(ShellVerb::Quit) + 1);

WordOutcome runCall(const FirstWord& word, const Call& call) {
  if (word.kind != FirstWord::Kind::Shell) {
    call.fail(translated("unknown command {1}", {quoteForMessage(call.arguments.front().text)}),
              call.arguments.front(),
              word.nearest.empty() ? translated("{1} lists what there is", {nameOf(ShellVerb::Help)})
                                   : translated("did you mean {1}?", {word.nearest}));
  }
  const Action& action = *std::ranges::find(kActions, word.verb, &Action::verb);
  if (call.arguments.size() - 1 > action.mostArguments) {
    const ShellArgument& first = call.arguments[action.mostArguments + 1];
    call.fail(translated("{1} takes no {2} here", {call.arguments.front().text, quoteForMessage(first.text)}),
              first,
              action.mostArguments > 0 ? translated("a name with blanks needs quotes") : std::string());
  }
  if (action.run == nullptr) return WordOutcome::Quit;
  action.run(call);
  return WordOutcome::Done;
}

}  // namespace

WordOutcome runShellWord(const FirstWord& word, const ShellLine& line, ShellWork& work, ShellView& view) {
  try {
    return runCall(word, {line, splitShellLine(line.text), work, view});
  } catch (const CommandError& error) {
    view.showDiagnostic(error.diagnostic());
    return WordOutcome::Failed;
  }
}

}  // namespace genostat::standalone
