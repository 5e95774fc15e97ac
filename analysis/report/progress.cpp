#include "analysis/report/progress.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/report/number_text.h"

namespace genostat::analysis {

namespace {

// The terminal's command to clear a line from the cursor on.
constexpr const char* kEraseRest = "\x1b[K";

// The bytes of the character that begins at `at`; 1 for a byte that begins none.
std::size_t characterSize(std::string_view text, std::size_t at) {
  std::size_t size = 1;
  while (at + size < text.size() && (static_cast<unsigned char>(text[at + size]) & 0xC0U) == 0x80U) {
    ++size;
  }
  return size;
}

// As much of a line as fits, without control characters. Every character that may be wide counts as
// two columns, so a line may end early but never wraps.
std::string fitted(std::string_view text, std::size_t width) {
  std::string line;
  std::size_t columns = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = characterSize(text, at);
    const auto lead = static_cast<unsigned char>(text[at]);
    columns += lead > 0xE0 ? 2U : 1U;
    if (columns > width) break;
    if (lead < 0x20 || lead == 0x7F) {
      line += '?';
    } else {
      line += text.substr(at, size);
    }
    at += size;
  }
  return line;
}

// As many as matter: "950 reads", "12 k reads", "1.25 M reads".
std::string readsText(std::uint64_t reads) {
  const auto count = static_cast<double>(reads);
  if (reads < 10'000) return integerText(reads) + (reads == 1 ? " read" : " reads");
  if (count < 1e6) return fixedText(count / 1e3, 0) + " k reads";
  return fixedText(count / 1e6, count < 1e7 ? 2 : 1) + " M reads";
}

// "  1:05 left", or nothing where it cannot be foreseen.
std::string timeLeftText(const JobProgress::State& state, double seconds) {
  // The first moments say little about the rest.
  constexpr double kFirstEstimate = 2;
  constexpr double kLongestEstimate = 99 * 3600;
  if (seconds < kFirstEstimate || state.bytesDone == 0 || state.bytesDone >= state.bytesTotal) return {};
  const auto left = static_cast<double>(state.bytesTotal - state.bytesDone);
  const double estimate = left * seconds / static_cast<double>(state.bytesDone);
  if (estimate > kLongestEstimate) return {};
  const auto whole = static_cast<std::uint64_t>(std::ceil(estimate));
  const auto twoDigits = [](std::uint64_t number) { return (number < 10 ? "0" : "") + integerText(number); };
  const std::uint64_t minutes = whole / 60;
  const std::string clock =
      minutes < 60 ? integerText(minutes) : integerText(minutes / 60) + ':' + twoDigits(minutes % 60);
  return "  " + clock + ':' + twoDigits(whole % 60) + " left";
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
  const auto done = static_cast<double>(state.bytesDone);
  std::string line;
  if (state.bytesTotal > 0) {
    // A file that grows while it is read has no more than all of it read.
    const double share = std::min(1.0, done / static_cast<double>(state.bytesTotal));
    line += fixedText(100 * share, 0) + " %  ";
  } else {
    line += fixedText(done / 1e6, 0) + " MB  ";
  }
  line += fixedText(seconds > 0 ? done / 1e6 / seconds : 0, 0) + " MB/s";
  if (state.readsDone > 0) line += "  " + readsText(state.readsDone);
  line += timeLeftText(state, seconds);
  if (state.samples > 1) {
    line += "  " + integerText(state.samplesDone) + " of " + integerText(state.samples) + " files";
  }
  const char* separator = "  ";
  for (const JobProgress::Running& sample : state.running) {
    line += separator + sample.name;
    separator = ", ";
  }
  return fitted(line, width);
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
