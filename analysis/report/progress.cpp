#include "analysis/report/progress.h"

#include <fmt/format.h>

#include <algorithm>
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

void JobProgress::expect(std::uint64_t bytes, std::size_t samples) {
  const std::lock_guard lock(mutex_);
  ended_.bytesTotal = bytes;
  ended_.samples = samples;
}

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

ProgressDisplay::ProgressDisplay(const JobProgress& progress, std::ostream& out,
                                 std::function<std::size_t()> width, std::chrono::milliseconds interval)
    : progress_(progress),
      out_(out),
      width_(std::move(width)),
      interval_(interval),
      start_(std::chrono::steady_clock::now()),
      thread_([this] { run(); }) {}

ProgressDisplay::~ProgressDisplay() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void ProgressDisplay::run() {
  bool shown = false;
  std::unique_lock lock(mutex_);
  while (!wake_.wait_for(lock, interval_, [this] { return ended_; })) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    // The last column stays free: some terminals begin a new line as soon as it is filled.
    const std::size_t room = std::max<std::size_t>(width_(), 1) - 1;
    out_ << '\r' + progressLine(progress_.state(), elapsed.count(), room) + kEraseRest << std::flush;
    shown = true;
  }
  if (shown) out_ << '\r' << kEraseRest << std::flush;
}

}  // namespace genostat::analysis
