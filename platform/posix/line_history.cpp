#include "platform/posix/line_history.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <fstream>
#include <system_error>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

Handle openHistory(const std::filesystem::path& file, int flags) {
  return Handle(open(file.c_str(), flags | O_CLOEXEC, kOwnerOnly));
}

// Keeps the others out while it lives. The history itself is replaced when it is cut, so that the
// lock is on a file beside it.
class HistoryLock {
 public:
  explicit HistoryLock(const std::filesystem::path& file)
      : lock_(openHistory(std::filesystem::path(file) += ".lock", O_RDWR | O_CREAT)),
        held_(lock_ && uninterrupted([&] { return flock(descriptor(lock_), LOCK_EX); }) == 0) {}
  explicit operator bool() const { return held_; }

 private:
  Handle lock_;
  bool held_;
};

std::vector<std::string> readLines(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file, std::ios::binary);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(std::move(line));
  }
  return lines;
}

// In one step: a reader sees the old file or the new one.
void replaceLines(const std::filesystem::path& file, const std::vector<std::string>& lines) {
  const auto fresh = std::filesystem::path(file) += ".new";
  {
    const Handle stream = openHistory(fresh, O_WRONLY | O_CREAT | O_TRUNC);
    std::string text;
    for (const std::string& line : lines) {
      text += line + '\n';
    }
    if (!stream || !writeAll(stream, text)) return;
  }
  std::error_code ignored;
  std::filesystem::rename(fresh, file, ignored);
}

}  // namespace

std::string historyLine(std::string_view entry) {
  std::string line;
  for (const char c : entry) {
    if (c == '\n') {
      line += "\\n";
    } else {
      if (c == '\\') line += '\\';
      line += c;
    }
  }
  return line;
}

std::string historyEntry(std::string_view line) {
  std::string entry;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '\\' || i + 1 == line.size()) {
      entry += line[i];
    } else {
      ++i;
      entry += line[i] == 'n' ? '\n' : line[i];
    }
  }
  return entry;
}

std::vector<std::string> LineHistory::load() const {
  if (file_.empty()) return {};
  std::error_code missing;
  if (!std::filesystem::exists(file_, missing)) return {};
  const HistoryLock lock(file_);
  std::vector<std::string> lines = readLines(file_);
  if (lines.size() > kMostEntries) {
    const bool cut = lines.size() > 2 * kMostEntries;
    lines.erase(lines.begin(), lines.end() - kMostEntries);
    if (cut && lock) replaceLines(file_, lines);
  }
  std::vector<std::string> entries;
  for (const std::string& line : lines) {
    entries.push_back(historyEntry(line));
  }
  return entries;
}

bool LineHistory::append(std::string_view entry) const {
  if (file_.empty()) return true;
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  const HistoryLock lock(file_);
  if (!lock) return false;
  const Handle stream = openHistory(file_, O_WRONLY | O_CREAT | O_APPEND);
  return stream && writeAll(stream, historyLine(entry) + '\n');
}

}  // namespace genostat::platform
