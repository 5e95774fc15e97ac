#include "analysis/report/progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <condition_variable>
#include <stop_token>
#include <utility>

#include "common/text/number_text.h"
#include "common/text/printable_text.h"
#include "common/text/progress_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

// The terminal's command to clear a line from the cursor on.
constexpr const char* kEraseRest = "\x1b[K";

// "  1:05 left", or nothing where it cannot be foreseen.
std::string timeLeftText(const JobProgress::State& state, double seconds) {
  const auto left = common::secondsLeft(state.bytesDone, state.bytesTotal, seconds);
  return left ? fmt::format("  {} left", common::clockText(*left)) : std::string();
}

}  // namespace

SampleProgress& JobProgress::begin(const std::string& name, std::uint64_t size) {
  const std::lock_guard lock(mutex_);
  return running_.emplace_back(name, size);
}

void JobProgress::end(const SampleProgress& sample) {
  const std::lock_guard lock(mutex_);
  ended_.bytesDone += sample.bytes();
  ended_.readsDone += sample.reads();
  ++ended_.samplesDone;
  running_.remove_if([&](const SampleProgress& one) { return &one == &sample; });
}

JobProgress::State JobProgress::state() const {
  const std::lock_guard lock(mutex_);
  State state = ended_;
  for (const SampleProgress& sample : running_) {
    state.running.push_back({sample.name(), sample.bytes(), sample.size(), sample.reads()});
    state.bytesDone += state.running.back().bytes;
    state.readsDone += state.running.back().reads;
  }
  return state;
}

std::string progressLine(const JobProgress::State& state, double seconds, std::size_t width) {
  const double rate = seconds > 0 ? static_cast<double>(state.bytesDone) / seconds : 0;
  std::string line = fmt::format("{}  {}",
                                 state.bytesTotal > 0 ? common::percentText(state.bytesDone, state.bytesTotal)
                                                      : common::sizeText(state.bytesDone),
                                 common::rateText(rate));
  if (state.readsDone > 0) {
    const std::string count = common::shortCount(static_cast<double>(state.readsDone));
    line += fmt::format("  {} {}", count, state.readsDone == 1 ? "read" : "reads");
  }
  line += timeLeftText(state, seconds);
  if (state.samples > 1) line += fmt::format("  {} of {} samples", state.samplesDone, state.samples);
  const char* separator = "  ";
  for (const JobProgress::Running& sample : state.running) {
    line += separator + common::printableText(sample.name);
    separator = ", ";
  }
  return std::string(common::cutToWidth(line, static_cast<int>(width)));
}

std::jthread startTicking(std::chrono::milliseconds first, std::chrono::milliseconds next,
                          std::function<bool(double seconds)> step) {
  using Clock = std::chrono::steady_clock;
  return std::jthread([=, start = Clock::now(), step = std::move(step)](const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    const auto elapses = [&](std::chrono::milliseconds time) {
      wake.wait_for(lock, stop, time, [] { return false; });
      return !stop.stop_requested();
    };
    for (auto time = first; elapses(time); time = next) {
      if (!step(std::chrono::duration<double>(Clock::now() - start).count())) return;
    }
  });
}

ProgressDisplay::ProgressDisplay(const JobProgress& progress, std::ostream& out,
                                 std::function<std::size_t()> width, std::chrono::milliseconds interval)
    : progress_(progress),
      out_(out),
      width_(std::move(width)),
      ticker_(startTicking(interval, interval, [this](double seconds) {
        show(seconds);
        return true;
      })) {}

ProgressDisplay::~ProgressDisplay() {
  ticker_ = {};
  if (shown_) out_ << '\r' << kEraseRest << std::flush;
}

void ProgressDisplay::show(double seconds) {
  // The last column stays free: some terminals begin a new line as soon as it is filled.
  const std::size_t room = std::max<std::size_t>(width_(), 1) - 1;
  out_ << '\r' + progressLine(progress_.state(), seconds, room) + kEraseRest << std::flush;
  shown_ = true;
}

}  // namespace genostat::analysis
