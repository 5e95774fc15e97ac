#include "standalone/session/job_progress.h"

#include <rapidjson/document.h>

#include <chrono>
#include <cmath>
#include <cstddef>
#include <span>
#include <system_error>
#include <utility>

#include "platform/input_file.h"
#include "standalone/output/table_json.h"

namespace genostat::standalone {

namespace {

namespace fs = std::filesystem;

constexpr const char* kProgressEnding = ".progress";
constexpr std::uint64_t kLargestProgressFile = 1 << 20;
// Writers renew their file several times a second.
constexpr std::chrono::seconds kStandsStill{5};

std::string progressText(const fs::path& file) {
  std::error_code unknown;
  // Opening a pipe would wait for its writer.
  if (!fs::is_regular_file(file, unknown)) return {};
  std::string text;
  try {
    const platform::InputFile input(file);
    if (input.size() > kLargestProgressFile) return {};
    text.resize(static_cast<std::size_t>(input.size()));
    std::size_t filled = 0;
    while (filled < text.size()) {
      const std::size_t size = input.readAt(filled, std::span(text).subspan(filled));
      if (size == 0) break;
      filled += size;
    }
    text.resize(filled);
  } catch (const std::system_error&) {
    return {};
  }
  return text;
}

// 0 where there is no such member, or another kind of one.
std::uint64_t countMember(const rapidjson::Value& object, const char* key) {
  const auto member = object.FindMember(key);
  return member != object.MemberEnd() && member->value.IsUint64() ? member->value.GetUint64() : 0;
}

double secondsMember(const rapidjson::Value& object) {
  const auto member = object.FindMember("seconds");
  if (member == object.MemberEnd() || !member->value.IsNumber()) return 0;
  const double seconds = member->value.GetDouble();
  return std::isfinite(seconds) && seconds > 0 ? seconds : 0;
}

bool isProgress(const rapidjson::Document& document) {
  return countMember(document, "version") == 1 && stringMember(document, "format") == "genostat-progress";
}

}  // namespace

fs::path progressFileOf(const fs::path& csv) {
  fs::path file = csv;
  file += kProgressEnding;
  return file;
}

std::optional<JobProgress> readJobProgress(const fs::path& file) {
  rapidjson::Document document;
  try {
    document = parseJson(progressText(file));
  } catch (const JsonFormatError&) {
    return std::nullopt;
  }
  if (!isProgress(document)) return std::nullopt;
  JobProgress progress;
  progress.samples = countMember(document, "samples");
  progress.finished = countMember(document, "finished");
  progress.bytesDone = countMember(document, "bytesDone");
  progress.bytesTotal = countMember(document, "bytesTotal");
  progress.readsDone = countMember(document, "readsDone");
  progress.seconds = secondsMember(document);
  const auto running = std::as_const(document).FindMember("running");
  if (running == std::as_const(document).MemberEnd() || !running->value.IsArray()) return progress;
  for (const rapidjson::Value& sample : running->value.GetArray()) {
    if (!sample.IsObject()) continue;
    progress.running.push_back({std::string(stringMember(sample, "name")), countMember(sample, "bytes"),
                                countMember(sample, "size"), countMember(sample, "reads")});
  }
  return progress;
}

std::optional<fs::path> findProgressFile(const fs::path& folder) {
  const fs::file_time_type stale = fs::file_time_type::clock::now() - kStandsStill;
  std::optional<fs::path> newest;
  fs::file_time_type newestTime = stale;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().extension() != kProgressEnding) continue;
    std::error_code gone;
    if (!entry->is_regular_file(gone)) continue;
    const fs::file_time_type time = fs::last_write_time(entry->path(), gone);
    if (gone || time <= newestTime) continue;
    newest = entry->path();
    newestTime = time;
  }
  return newest;
}

}  // namespace genostat::standalone
