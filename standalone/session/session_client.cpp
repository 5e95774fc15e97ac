// What a session does for a client that goes on reading commands while jobs run.
#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "standalone/session/session.h"

namespace genostat::standalone {

namespace {

// A job cancelled before its process exists is started all the same and cancelled again.
constexpr std::chrono::milliseconds kCancelRepeat(200);

// The last command of the text, with a token for the place behind it; none where the text is broken before.
std::optional<Command> commandWithPlace(const std::string& text) {
  const auto source = std::make_shared<const SourceText>(SourceText{{}, text + std::string(kPlaceText)});
  CommandScanner scanner(source);
  std::optional<Command> command;
  while (auto item = scanner.next()) {
    command = item->error ? std::nullopt : std::optional<Command>(std::move(item->command));
  }
  if (!command || command->tokens.size() < 2) return std::nullopt;
  Token& place = command->tokens[command->tokens.size() - 2];
  if (place.text != kPlaceText) return std::nullopt;
  place.kind = Token::Kind::Word;
  return command;
}

// The variables alone.
Dataset withoutCases(const Dataset& dataset) {
  Dataset empty;
  for (const Column& column : dataset.columns) {
    empty.columns.push_back({column.name, column.type, column.decimals, {}, {}});
  }
  return empty;
}

}  // namespace

// The command is run for its parser: that fails at the place, and what it does before falls upon copies.
Expectation Session::expectedBehind(const std::string& text) {
  Expectation expectation;
  const std::optional<Command> command = commandWithPlace(text);
  if (!command) return expectation;
  DatasetStore datasets;
  // Commands that need a dataset are completed without one.
  const Dataset* active = datasets_.active();
  datasets.add(active != nullptr ? withoutCases(*active) : Dataset());
  OutputDocument output;
  Settings settings = settings_;
  const ExpectationScope noting(expectation);
  const CommandScope running(*command);
  const auto shown = std::exchange(reporter_, [](const Diagnostic&) {});
  try {
    const CommandHandler& handler = dispatcher_.find(*command);
    if (handler.run == nullptr) {
      adapter_.setInteractive(false);
      module_.runCommand();
      adapter_.setInteractive(options_.interactive);
    } else {
      CommandContext context{*command, datasets, output, settings, [](const Diagnostic&) {}};
      handler.run(context);
    }
  } catch (const CommandError&) {
    // At the place, or at a fault before it.
  }
  reporter_ = shown;
  return expectation;
}

void Session::followJobs(std::chrono::milliseconds patience) {
  if (gate_.interrupted()) waitForProgramEnd();
  if (const auto message = adapter_.take(patience)) onMessage(*message);
  showMessages();
  checkForLostJobs();
  repeatCancels();
  clearUpCancelled();
}

void Session::runEndedJob() {
  if (ended_.empty()) return;
  const ClientMessage message = std::move(ended_.front());
  ended_.pop_front();
  runEndSyntax(message);
}

bool Session::cancelJob(const std::string& name) {
  const std::vector<JobStatus> open = tracker_.openJobs();
  const bool known = std::ranges::any_of(open, [&](const JobStatus& job) { return job.name == name; });
  if (!known) return false;
  module_.cancelJob(name);
  cancels_[name] = std::chrono::steady_clock::now() + kCancelRepeat;
  return true;
}

void Session::cancelAllJobs() {
  module_.cancelAllPending();
  for (const JobStatus& job : tracker_.openJobs()) {
    cancelJob(job.name);
  }
}

void Session::repeatCancels() {
  const auto now = std::chrono::steady_clock::now();
  for (auto cancel = cancels_.begin(); cancel != cancels_.end();) {
    auto& [name, due] = *cancel;
    if (!module_.isJobPendingOrRunning(name)) {
      cancel = cancels_.erase(cancel);
      continue;
    }
    if (now >= due) {
      module_.cancelJob(name);
      due = now + kCancelRepeat;
    }
    ++cancel;
  }
}

// A cancelled job has told its end before its processes have ended.
void Session::clearUpCancelled() {
  if (!cancelled_ || !tracker_.openNames().empty() || moduleHoldsJobs()) return;
  adapter_.removeCancelledLeftovers();
  cancelled_ = false;
}

}  // namespace genostat::standalone
