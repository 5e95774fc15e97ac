#include "platform/posix/line_history.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <system_error>

namespace genostat::platform {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// A file descriptor, closed once.
class HistoryFile {
 public:
  HistoryFile(const std::filesystem::path& file, int flags)
      : file_(open(file.c_str(), flags | O_CLOEXEC, kOwnerOnly)) {}
  ~HistoryFile() {
    if (file_ >= 0) close(file_);
  }
  HistoryFile(const HistoryFile&) = delete;
  HistoryFile& operator=(const HistoryFile&) = delete;

  int get() const { return file_; }
  bool isOpen() const { return file_ >= 0; }

  bool write(std::string_view text) const {
    while (!text.empty()) {
      const ssize_t written = ::write(file_, text.data(), text.size());
      if (written <= 0) return false;
      text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
  }

 private:
  int file_;
};

// Keeps the others out while it lives. The history itself is replaced when it is cut, so that the
// lock is on a file beside it.
class HistoryLock {
 public:
  explicit HistoryLock(const std::filesystem::path& file)
      : lock_(std::filesystem::path(file) += ".lock", O_RDWR | O_CREAT) {
    held_ = lock_.isOpen() && flock(lock_.get(), LOCK_EX) == 0;
  }
  explicit operator bool() const { return held_; }

 private:
  HistoryFile lock_;
  bool held_ = false;
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
    const HistoryFile stream(fresh, O_WRONLY | O_CREAT | O_TRUNC);
    std::string text;
    for (const std::string& line : lines) {
      text += line + '\n';
    }
    if (!stream.isOpen() || !stream.write(text)) return;
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
  const HistoryFile stream(file_, O_WRONLY | O_CREAT | O_APPEND);
  return stream.isOpen() && stream.write(historyLine(entry) + '\n');
}

}  // namespace genostat::platform
