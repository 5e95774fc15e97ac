#include "analysis/report/progress_file.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>
#include <cmath>
#include <exception>
#include <fstream>
#include <string_view>
#include <system_error>

#include "common/files/part_file.h"
#include "common/text/number_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".progress";
constexpr std::string_view kBeginning = R"({"format":"genostat-progress",)";
constexpr std::chrono::minutes kAbandoned{1};

bool isProgressFile(const fs::path& file) {
  std::error_code unknown;
  // Opening a pipe would wait.
  if (!fs::is_regular_file(fs::symlink_status(file, unknown))) return false;
  std::filebuf stream;
  std::array<char, kBeginning.size()> front{};
  if (stream.open(file, std::ios::in | std::ios::binary) == nullptr) return false;
  const std::streamsize size = stream.sgetn(front.data(), front.size());
  return std::string_view(front.data(), static_cast<std::size_t>(size)) == kBeginning;
}

fs::path besideResult(const fs::path& result) {
  fs::path file = result;
  file += kEnding;
  return file;
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
  rapidjson::StringBuffer json;
  rapidjson::Writer<rapidjson::StringBuffer> writer(json);
  const auto count = [&](const char* name, std::uint64_t value) {
    writer.Key(name);
    writer.Uint64(value);
  };
  writer.StartObject();
  writer.Key("format");
  writer.String("genostat-progress");
  count("version", 1);
  count("samples", state.samples);
  count("finished", state.samplesDone);
  count("bytesDone", state.bytesDone);
  count("bytesTotal", state.bytesTotal);
  count("readsDone", state.readsDone);
  writer.Key("seconds");
  const std::string text = common::fixedText(seconds, 3);
  writer.RawValue(text.data(), text.size(), rapidjson::kNumberType);
  writer.Key("running");
  writer.StartArray();
  for (const JobProgress::Running& sample : state.running) {
    const std::string name = common::toValidUtf8(sample.name);
    writer.StartObject();
    writer.Key("name");
    writer.String(name.data(), static_cast<rapidjson::SizeType>(name.size()));
    count("bytes", sample.bytes);
    count("size", sample.size);
    count("reads", sample.reads);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
  return std::string(json.GetString(), json.GetSize()) + '\n';
}

ProgressFile::ProgressFile(const JobProgress& progress, const fs::path& result, Pace pace)
    : progress_(progress),
      file_(besideResult(result)),
      pace_(pace),
      start_(std::chrono::steady_clock::now()) {
  // Of a run that was killed: it would be taken for this job's.
  std::error_code ignored;
  if (isProgressFile(file_)) fs::remove(file_, ignored);
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // No thread to be had: the job needs its own ones more.
  }
}

ProgressFile::~ProgressFile() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
  if (written_) removeSoon(file_);
}

void ProgressFile::run() {
  if (!waitFor(pace_.first) || isForeign()) return;
  do {
    update();
  } while (waitFor(pace_.next));
}

bool ProgressFile::isForeign() const {
  try {
    std::error_code unknown;
    const bool isTaken = fs::symlink_status(file_, unknown).type() != fs::file_type::not_found;
    return isTaken && !isProgressFile(file_);
  } catch (const std::exception&) {
    return true;
  }
}

// False when the job has ended meanwhile.
bool ProgressFile::waitFor(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return !wake_.wait_for(lock, time, [this] { return ended_; });
}

void ProgressFile::update() {
  try {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    platform::LockedFile part = common::createPart(file_.parent_path());
    part.write(progressJson(progress_.state(), elapsed.count()));
    part.moveTo(file_, false);
    written_ = true;
  } catch (const std::exception&) {
    // The next one may succeed; the job does not depend on it.
  }
}

void removeAbandonedProgress(const fs::path& folder) {
  const fs::file_time_type abandoned = fs::file_time_type::clock::now() - kAbandoned;
  std::error_code error;
  fs::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& file = entry->path();
    if (file.extension() != kEnding) continue;
    std::error_code gone;
    const fs::file_time_type time = fs::last_write_time(file, gone);
    if (!gone && time < abandoned && isProgressFile(file)) fs::remove(file, gone);
  }
}

}  // namespace genostat::analysis
