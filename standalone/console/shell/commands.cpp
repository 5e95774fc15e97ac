#include "standalone/console/shell/commands.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

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

// A line that is run.
class WordRun {
 public:
  WordRun(const ShellLine& line, ShellWork& work, ShellView& view)
      : line_(line),
        arguments_(splitShellLine(line.text)),
        work_(work),
        session_(work.session()),
        view_(view) {}

  // Throw CommandError at a part of the line.
  WordOutcome run(ShellVerb verb);
  [[noreturn]] void rejectWord(const std::string& nearest) const;

 private:
  struct Action {
    ShellVerb verb;
    std::size_t mostArguments;
    void (WordRun::*run)();  // null: leaves the shell
  };
  static const Action& actionOf(ShellVerb verb);

  void showJobs();
  void cancel();
  void waitForJobs();
  void showDatasets();
  void showCases();
  void writeOutput();
  void runFile();
  void help();

  [[noreturn]] void rejectArgument(std::size_t most) const;
  [[noreturn]] void fail(std::string message, const ShellArgument& at, std::string hint = {}) const;
  [[noreturn]] void failUnknown(const ShellArgument& at, const std::vector<std::string>& known,
                                std::string message) const;
  [[noreturn]] void failUnknownData(const ShellArgument& name) const;

  const ShellLine& line_;
  const std::vector<ShellArgument> arguments_;  // the word itself first
  ShellWork& work_;
  Session& session_;
  ShellView& view_;
};

const WordRun::Action& WordRun::actionOf(ShellVerb verb) {
  constexpr std::size_t kAny = std::string::npos;
  static constexpr std::array kActions = {
      Action{ShellVerb::Jobs, 0, &WordRun::showJobs},
      Action{ShellVerb::Cancel, 1, &WordRun::cancel},
      Action{ShellVerb::Wait, 0, &WordRun::waitForJobs},
      Action{ShellVerb::Datasets, 0, &WordRun::showDatasets},
      Action{ShellVerb::Show, 2, &WordRun::showCases},
      Action{ShellVerb::Output, 2, &WordRun::writeOutput},
      Action{ShellVerb::Run, 1, &WordRun::runFile},
      Action{ShellVerb::Help, kAny, &WordRun::help},
      Action{ShellVerb::Quit, 0, nullptr},
  };
  static_assert(kActions.size() == static_cast<std::size_t>(ShellVerb::Quit) + 1);
  return *std::ranges::find(kActions, verb, &Action::verb);
}

WordOutcome WordRun::run(ShellVerb verb) {
  const Action& action = actionOf(verb);
  if (arguments_.size() - 1 > action.mostArguments) rejectArgument(action.mostArguments);
  if (action.run == nullptr) return WordOutcome::Quit;
  (this->*action.run)();
  return WordOutcome::Done;
}

void WordRun::rejectWord(const std::string& nearest) const {
  fail(translated("unknown command {1}", {quoteForMessage(arguments_.front().text)}), arguments_.front(),
       nearest.empty() ? translated("{1} lists what there is", {nameOf(ShellVerb::Help)})
                       : translated("did you mean {1}?", {nearest}));
}

void WordRun::rejectArgument(std::size_t most) const {
  const ShellArgument& first = arguments_[most + 1];
  fail(translated("{1} takes no {2} here", {arguments_.front().text, quoteForMessage(first.text)}), first,
       most > 0 ? translated("a name with blanks stands in quotes") : std::string());
}

void WordRun::fail(std::string message, const ShellArgument& at, std::string hint) const {
  const auto source = std::make_shared<const SourceText>(
      SourceText{line_.typed ? "<shell>" : "<stdin>", std::string(line_.text)});
  SourceRange range{source, at.begin, at.end, line_.number};
  throw CommandError(Diagnostic{{}, std::move(message), std::move(range), std::move(hint)});
}

void WordRun::failUnknown(const ShellArgument& at, const std::vector<std::string>& known,
                          std::string message) const {
  const auto nearest = nearestKeyword(at.text, viewsOf(known));
  fail(std::move(message), at, nearest ? translated("did you mean {1}?", {*nearest}) : std::string());
}

void WordRun::showJobs() {
  work_.followJobs();
  const std::vector<JobStatus> jobs = session_.openJobs();
  if (jobs.empty()) return view_.showAnswer(translated("no job runs or waits"));
  const auto file = findProgressFile(hostFolders().temporary);
  view_.showAnswer(
      jobsTable(jobs, file ? readJobProgress(*file) : std::nullopt, std::chrono::steady_clock::now()));
}

void WordRun::cancel() {
  work_.followJobs();
  std::vector<std::string> names;
  for (const JobStatus& job : session_.openJobs()) {
    names.push_back(job.name);
  }
  if (arguments_.size() < 2) {
    fail(translated("cancel needs the name of a job, or all"), arguments_.front(),
         names.empty() ? translated("no job runs or waits")
                       : translated("there is {1}", {joinAlternatives(viewsOf(names))}));
  }
  const ShellArgument& name = arguments_[1];
  if (std::ranges::find(names, name.text) == names.end() && equalsIgnoreCase(name.text, "all")) {
    if (names.empty()) view_.showNotice(translated("no job runs or waits"));
    session_.cancelAllJobs();
  } else if (!session_.cancelJob(name.text)) {
    failUnknown(name, names, translated("no job {1} runs or waits", {quoteForMessage(name.text)}));
  }
  work_.followJobs();
}

void WordRun::waitForJobs() {
  if (!line_.typed) return work_.finishJobs();
  if (session_.openJobs().empty() && !session_.hasEndedJobs()) {
    return view_.showAnswer(translated("no job runs or waits"));
  }
  work_.waitForJobs();
}

void WordRun::showDatasets() {
  auto& datasets = session_.datasets();
  if (datasets.all().empty()) return view_.showAnswer(translated("no dataset is open"));
  view_.showAnswer(datasetsTable(datasets.all(), datasets.active()));
}

void WordRun::showCases() {
  auto& datasets = session_.datasets();
  const Dataset* dataset = datasets.active();
  const Column* variable = nullptr;
  if (arguments_.size() > 1) {
    const ShellArgument& name = arguments_[1];
    const auto found = std::ranges::find_if(
        datasets.all(), [&](const auto& candidate) { return equalsIgnoreCase(candidate->name, name.text); });
    if (found != datasets.all().end()) {
      dataset = found->get();
    } else {
      variable = dataset != nullptr ? dataset->find(name.text) : nullptr;
      if (variable == nullptr) failUnknownData(name);
    }
  }
  if (dataset == nullptr) fail(translated("no dataset is active"), arguments_.front());
  std::size_t count = kUsualCases;
  if (arguments_.size() > 2) {
    const std::string& text = arguments_[2].text;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (fault != std::errc() || end != text.data() + text.size() || count == 0) {
      fail(translated("expected a number of cases, found {1}", {quoteForMessage(text)}), arguments_[2]);
    }
  }
  view_.document().beginCommand("<shell>");
  view_.document().addTable("SHOW", casesTable(*dataset, variable, count));
}

void WordRun::failUnknownData(const ShellArgument& name) const {
  std::vector<std::string> known;
  for (const auto& dataset : session_.datasets().all()) {
    known.push_back(dataset->name);
  }
  if (const Dataset* active = session_.datasets().active()) {
    for (const Column& column : active->columns) {
      known.push_back(column.name);
    }
  }
  failUnknown(
      name, known,
      translated("no dataset and no variable of the active one is called {1}", {quoteForMessage(name.text)}));
}

void WordRun::writeOutput() {
  static const std::vector<std::string> forms = {"html", "json", "text"};
  if (arguments_.size() < 3) {
    fail(translated("output needs a form and the name of a file"), arguments_.front(),
         "output html report.html");
  }
  const auto form = matchKeyword(arguments_[1].text, viewsOf(forms));
  if (!form) {
    failUnknown(arguments_[1], forms,
                translated("expected html, json or text, found {1}", {quoteForMessage(arguments_[1].text)}));
  }
  constexpr OutputFormat kForms[] = {OutputFormat::Html, OutputFormat::Json, OutputFormat::Text};
  try {
    view_.writeReport(arguments_[2].text, kForms[*form], translated("Results"));
  } catch (const std::runtime_error& error) {
    fail(error.what(), arguments_[2]);
  }
  view_.showNotice(translated("written: {1}", {arguments_[2].text}));
}

void WordRun::runFile() {
  if (arguments_.size() < 2) fail(translated("run needs the name of a file"), arguments_.front());
  TextFile file = readTextFile(platform::pathFromUtf8(arguments_[1].text));
  if (!file.error.empty()) fail(file.error, arguments_[1]);
  work_.run({arguments_[1].text, std::move(file.text)});
  if (work_.isStopped()) view_.showNotice(translated("stopped; the rest of the file has not run"));
}

void WordRun::help() {
  if (arguments_.size() < 2) return view_.showText(helpOverview());
  // A command's name may be two words.
  std::string topic = arguments_[1].text;
  for (std::size_t i = 2; i < arguments_.size(); ++i) {
    topic += ' ' + arguments_[i].text;
  }
  const std::string text = helpOn(topic);
  if (!text.empty()) return view_.showText(text);
  const ShellArgument whole{topic, arguments_[1].begin, arguments_.back().end};
  failUnknown(whole, helpTopics(), translated("there is no help on {1}", {quoteForMessage(topic)}));
}

}  // namespace

WordOutcome runShellWord(const FirstWord& word, const ShellLine& line, ShellWork& work, ShellView& view) {
  WordRun run(line, work, view);
  try {
    if (word.kind != FirstWord::Kind::Shell) run.rejectWord(word.nearest);
    return run.run(word.verb);
  } catch (const CommandError& error) {
    view.showDiagnostic(error.diagnostic());
    return WordOutcome::Failed;
  }
}

}  // namespace genostat::standalone
