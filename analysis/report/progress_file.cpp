#include "analysis/report/progress_file.h"

#include <array>
#include <exception>
#include <string_view>
#include <system_error>

#include "analysis/report/json_text.h"
#include "common/files/part_file.h"
#include "common/text/number_text.h"
#include "platform/input_file.h"

namespace genostat::analysis {

namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".progress";
constexpr std::string_view kBeginning = R"({"format":"genostat-progress",)";
constexpr std::chrono::minutes kAbandoned{1};

bool isProgressFile(const fs::path& file) {
  std::error_code unknown;
  if (!fs::is_regular_file(fs::symlink_status(file, unknown))) return false;
  try {
    // Others may have put something else there meanwhile.
    const platform::InputFile input(file);
    std::array<char, kBeginning.size()> front{};
    return input.isRegular() && std::string_view(front.data(), input.readAt(0, front)) == kBeginning;
  } catch (const std::system_error&) {
    return false;
  }
}

fs::path progressFileOf(const fs::path& result) {
  fs::path file = result;
  return file += kEnding;
}

// Where a file that somebody has open cannot be removed, it is let go in a moment.
void removeSoon(const fs::path& file) {
  std::error_code error;
  for (int attempt = 1; fs::remove(file, error), error && attempt < 10; ++attempt) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace

std::string progressJson(const JobProgress::State& state, double seconds) {
  JsonText json;
  json.object([&] {
    json.member("format", "genostat-progress");
    json.member("version", 1);
    json.member("samples", state.samples);
    json.member("finished", state.samplesDone);
    json.member("bytesDone", state.bytesDone);
    json.member("bytesTotal", state.bytesTotal);
    json.member("readsDone", state.readsDone);
    json.key("seconds");
    json.rawNumber(common::fixedText(seconds, 3));
    json.arrayMember("running", state.running, [&](const JobProgress::Running& sample) {
      json.object([&] {
        json.member("name", sample.name);
        json.member("bytes", sample.bytes);
        json.member("size", sample.size);
        json.member("reads", sample.reads);
      });
    });
  });
  return json.text() + '\n';
}

ProgressFile::ProgressFile(const JobProgress& progress, const fs::path& result, Pace pace)
    : progress_(progress), file_(progressFileOf(result)) {
  // Of a run that was killed: it would be taken for this job's.
  removeProgress(result);
  try {
    ticker_ = startTicking(pace.first, pace.next, [this](double seconds) { return update(seconds); });
  } catch (const std::system_error&) {
    // No thread to be had: the job needs its own ones more.
  }
}

ProgressFile::~ProgressFile() {
  ticker_ = {};
  if (written_) removeSoon(file_);
}

bool ProgressFile::update(double seconds) {
  try {
    // What was there before the first time is somebody else's.
    std::error_code unknown;
    const bool isFree = known_ || fs::symlink_status(file_, unknown).type() == fs::file_type::not_found;
    if (!isFree && !isProgressFile(file_)) return false;
    known_ = true;
    platform::LockedFile part = common::createPart(file_.parent_path());
    part.write(progressJson(progress_.state(), seconds));
    part.moveTo(file_, false);
    written_ = true;
  } catch (const std::exception&) {
    // The next one may succeed; the job does not depend on it.
  }
  return true;
}

void removeProgress(const fs::path& result) {
  std::error_code ignored;
  if (isProgressFile(progressFileOf(result))) fs::remove(progressFileOf(result), ignored);
}

void removeAbandonedProgress(const fs::path& file) {
  if (file.extension() != kEnding) return;
  std::error_code gone;
  const fs::file_time_type time = fs::last_write_time(file, gone);
  const bool abandoned = !gone && time < fs::file_time_type::clock::now() - kAbandoned;
  if (abandoned && isProgressFile(file)) fs::remove(file, gone);
}

}  // namespace genostat::analysis
