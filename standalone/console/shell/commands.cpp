// What the shell words do.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/path_text.h"
#include "standalone/console/shell/help.h"
#include "standalone/console/shell/shell.h"
#include "standalone/console/shell/tables.h"
#include "standalone/console/shell/working.h"
#include "standalone/language/translation.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/job_progress.h"
#include "standalone/syntax/keyword.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kUsualCases = 10;
constexpr std::chrono::milliseconds kFollowing(50);

std::vector<std::string_view> viewsOf(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

}  // namespace

bool Shell::runWord(const FirstWord& word, std::string_view line) {
  line_ = line;
  const Arguments arguments = splitShellLine(line);
  try {
    if (word.kind != FirstWord::Kind::Shell) {
      fail(translated("unknown command {1}", {quoteForMessage(arguments.front().text)}), arguments.front(),
           word.nearest.empty() ? translated("{1} tells what there is", {nameOf(ShellVerb::Help)})
                                : translated("did you mean {1}?", {word.nearest}));
    }
    switch (word.verb) {
      case ShellVerb::Jobs:
        rejectArguments(arguments, 0);
        showJobs();
        break;
      case ShellVerb::Cancel:
        rejectArguments(arguments, 1);
        cancel(arguments);
        break;
      case ShellVerb::Wait:
        rejectArguments(arguments, 0);
        waitForJobs();
        break;
      case ShellVerb::Datasets:
        rejectArguments(arguments, 0);
        showDatasets();
        break;
      case ShellVerb::Show:
        rejectArguments(arguments, 2);
        showCases(arguments);
        break;
      case ShellVerb::Output:
        rejectArguments(arguments, 2);
        writeOutput(arguments);
        break;
      case ShellVerb::Run:
        rejectArguments(arguments, 1);
        runFile(arguments);
        break;
      case ShellVerb::Help:
        help(arguments);
        break;
      case ShellVerb::Quit:
        rejectArguments(arguments, 0);
        return quit();
    }
  } catch (const CommandError& error) {
    failed_ = true;
    view_.showDiagnostic(error.diagnostic());
  }
  return false;
}

void Shell::fail(std::string message, const ShellArgument& at, std::string hint) const {
  const bool typed = editor_->isInteractive();
  const auto source = std::make_shared<const SourceText>(SourceText{typed ? "<shell>" : "<stdin>", line_});
  SourceRange range{source, at.begin, at.end, typed ? 1 : lineNumber_};
  throw CommandError(Diagnostic{{}, std::move(message), std::move(range), std::move(hint)});
}

void Shell::failUnknown(const ShellArgument& at, const std::vector<std::string>& known,
                        std::string message) const {
  const auto nearest = nearestKeyword(at.text, viewsOf(known));
  fail(std::move(message), at, nearest ? translated("did you mean {1}?", {*nearest}) : std::string());
}

void Shell::rejectArguments(const Arguments& arguments, std::size_t most) const {
  if (arguments.size() <= most + 1) return;
  const ShellArgument& first = arguments[most + 1];
  fail(translated("{1} takes no {2} here", {arguments.front().text, quoteForMessage(first.text)}), first,
       most > 0 ? translated("a name with blanks stands in quotes") : std::string());
}

void Shell::showJobs() {
  session_->followJobs(std::chrono::milliseconds(0));
  const std::vector<JobStatus> jobs = session_->openJobs();
  if (jobs.empty()) return view_.showAnswer(translated("no job runs or waits"));
  const auto file = findProgressFile(hostFolders().temporary);
  view_.showAnswer(
      jobsTable(jobs, file ? readJobProgress(*file) : std::nullopt, std::chrono::steady_clock::now()));
}

void Shell::cancel(const Arguments& arguments) {
  session_->followJobs(std::chrono::milliseconds(0));
  std::vector<std::string> names;
  for (const JobStatus& job : session_->openJobs()) {
    names.push_back(job.name);
  }
  if (arguments.size() < 2) {
    fail(translated("cancel needs the name of a job, or all"), arguments.front(),
         names.empty() ? translated("no job runs or waits")
                       : translated("there is {1}", {joinAlternatives(viewsOf(names))}));
  }
  const ShellArgument& name = arguments[1];
  if (std::ranges::find(names, name.text) == names.end() && equalsIgnoreCase(name.text, "all")) {
    if (names.empty()) view_.showNotice(translated("no job runs or waits"));
    session_->cancelAllJobs();
  } else if (!session_->cancelJob(name.text)) {
    failUnknown(name, names, translated("no job {1} runs or waits", {quoteForMessage(name.text)}));
  }
  session_->followJobs(std::chrono::milliseconds(0));
}

void Shell::waitForJobs() {
  if (!editor_->isInteractive()) return session_->finishJobs();
  if (session_->openJobs().empty() && !session_->hasEndedJobs()) {
    return view_.showAnswer(translated("no job runs or waits"));
  }
  const Working working(*this);
  view_.showProgress(true);
  do {
    session_->followJobs(kFollowing);
    while (session_->canRunEndedJobs() && !stopped_) {
      runEndedJob();
    }
  } while (!stopped_ && (!session_->openJobs().empty() || session_->hasEndedJobs()));
  view_.showProgress(false);
  if (stopped_) view_.showNotice(translated("the jobs go on"));
}

void Shell::showDatasets() {
  auto& datasets = session_->datasets();
  if (datasets.all().empty()) return view_.showAnswer(translated("no dataset is open"));
  view_.showAnswer(datasetsTable(datasets.all(), datasets.active()));
}

void Shell::showCases(const Arguments& arguments) {
  auto& datasets = session_->datasets();
  const Dataset* dataset = datasets.active();
  const Column* variable = nullptr;
  if (arguments.size() > 1) {
    const ShellArgument& name = arguments[1];
    const auto found = std::ranges::find_if(
        datasets.all(), [&](const auto& candidate) { return equalsIgnoreCase(candidate->name, name.text); });
    if (found != datasets.all().end()) {
      dataset = found->get();
    } else {
      variable = dataset != nullptr ? dataset->find(name.text) : nullptr;
      if (variable == nullptr) failUnknownData(name);
    }
  }
  if (dataset == nullptr) fail(translated("no dataset is active"), arguments.front());
  std::size_t count = kUsualCases;
  if (arguments.size() > 2) {
    const std::string& text = arguments[2].text;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (fault != std::errc() || end != text.data() + text.size() || count == 0) {
      fail(translated("expected a number of cases, found {1}", {quoteForMessage(text)}), arguments[2]);
    }
  }
  view_.document().beginCommand("<shell>");
  view_.document().addTable("SHOW", casesTable(*dataset, variable, count));
}

void Shell::failUnknownData(const ShellArgument& name) {
  std::vector<std::string> known;
  for (const auto& dataset : session_->datasets().all()) {
    known.push_back(dataset->name);
  }
  if (const Dataset* active = session_->datasets().active()) {
    for (const Column& column : active->columns) {
      known.push_back(column.name);
    }
  }
  failUnknown(
      name, known,
      translated("no dataset and no variable of the active one is called {1}", {quoteForMessage(name.text)}));
}

void Shell::writeOutput(const Arguments& arguments) {
  static const std::vector<std::string> forms = {"html", "json", "text"};
  if (arguments.size() < 3) {
    fail(translated("output needs a form and the name of a file"), arguments.front(),
         "output html report.html");
  }
  const auto form = matchKeyword(arguments[1].text, viewsOf(forms));
  if (!form) {
    failUnknown(arguments[1], forms,
                translated("expected html, json or text, found {1}", {quoteForMessage(arguments[1].text)}));
  }
  constexpr OutputFormat kForms[] = {OutputFormat::Html, OutputFormat::Json, OutputFormat::Text};
  try {
    view_.writeReport(arguments[2].text, kForms[*form], translated("Results"));
  } catch (const std::runtime_error& error) {
    fail(error.what(), arguments[2]);
  }
  view_.showNotice(translated("written: {1}", {arguments[2].text}));
}

void Shell::runFile(const Arguments& arguments) {
  if (arguments.size() < 2) fail(translated("run needs the name of a file"), arguments.front());
  TextFile file = readTextFile(platform::pathFromUtf8(arguments[1].text));
  if (!file.error.empty()) fail(file.error, arguments[1]);
  const Working working(*this);
  session_->run(std::make_shared<const SourceText>(SourceText{arguments[1].text, std::move(file.text)}));
  if (stopped_) view_.showNotice(translated("stopped; the rest of the file has not run"));
}

void Shell::help(const Arguments& arguments) {
  if (arguments.size() < 2) return view_.showText(helpOverview());
  // A command's name may be two words.
  std::string topic = arguments[1].text;
  for (std::size_t i = 2; i < arguments.size(); ++i) {
    topic += ' ' + arguments[i].text;
  }
  const std::string text = helpOn(topic);
  if (!text.empty()) return view_.showText(text);
  const ShellArgument whole{topic, arguments[1].begin, arguments.back().end};
  failUnknown(whole, helpTopics(), translated("there is no help on {1}", {quoteForMessage(topic)}));
}

bool Shell::quit() {
  if (!editor_->isInteractive()) return true;
  session_->followJobs(std::chrono::milliseconds(0));
  return session_->openJobs().empty() || askToQuit();
}

bool Shell::askToQuit() {
  const std::string question =
      translatedCount(session_->openJobs().size(), "{1} job has not ended.", "{1} jobs have not ended.") +
      ' ' + translated("Wait, cancel, or go on working?") + " [w/c/g] ";
  asking_ = true;
  const platform::LineEditor::Input answer = editor_->read(question);
  asking_ = false;
  using Kind = platform::LineEditor::Input::Kind;
  if (answer.kind == Kind::Line && (answer.text.starts_with('w') || answer.text.starts_with('W'))) {
    waitForJobs();
    return session_->openJobs().empty() && !session_->hasEndedJobs();
  }
  const bool cancels =
      answer.kind == Kind::End || answer.text.starts_with('c') || answer.text.starts_with('C');
  if (!cancels) return false;
  session_->cancelAllJobs();
  while (!session_->openJobs().empty() || session_->isCancelling()) {
    session_->followJobs(kFollowing);
  }
  return true;
}

}  // namespace genostat::standalone
