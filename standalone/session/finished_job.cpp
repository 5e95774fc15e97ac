#include "standalone/session/finished_job.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "common/files/part_file.h"
#include "common/text/ascii.h"
#include "common/text/utf8.h"
#include "platform/path_text.h"
#include "standalone/language/translation.h"
#include "standalone/output/table_json.h"
#include "standalone/services/current.h"
#include "standalone/session/job_progress.h"
#include "standalone/session/requirements.h"
#include "standalone/session/unread_samples.h"
#include "standalone/syntax/command.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

namespace {

// The module's message codes: 101, and 200 plus the exit code in arithmetic of 32 bits.
constexpr std::int32_t kNoResultFile = 101;
constexpr std::uint32_t kExitCodeOffset = 200;
constexpr double kCodeLimit = 2147483648.0;
constexpr std::size_t kLongestFileName = 200;  // bytes; leaves room for a number and the suffix

bool isWord(const Token& token, std::string_view keyword) {
  return token.kind == Token::Kind::Word && common::equalsIgnoreCase(token.text, keyword);
}

bool isImport(const Command& command) {
  return command.tokens.size() > 1 && isWord(command.tokens[0], "GET") && isWord(command.tokens[1], "DATA");
}

// The number in "MESSAGE=205".
std::optional<std::int32_t> messageCode(const Command& command) {
  const auto& tokens = command.tokens;
  for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
    if (isWord(tokens[i], "MESSAGE") && tokens[i + 1].isSymbol('=') &&
        tokens[i + 2].kind == Token::Kind::Number && std::abs(tokens[i + 2].number) < kCodeLimit) {
      return static_cast<std::int32_t>(tokens[i + 2].number);
    }
  }
  return std::nullopt;
}

// The result's path with another ending; cut at its last period, wherever that stands.
std::filesystem::path errorDetailsFile(const std::filesystem::path& csv) {
  const std::filesystem::path::string_type& text = csv.native();
  std::filesystem::path file(text.substr(0, text.rfind('.')));
  file += ".error";
  return file;
}

// The sentence in the error-details file, or empty.
std::string readFailureSentence(const std::filesystem::path& csv) {
  std::error_code unknown;
  // A pipe would be read until its writers have gone.
  if (!std::filesystem::is_regular_file(errorDetailsFile(csv), unknown)) return {};
  const TextFile file = readTextFile(errorDetailsFile(csv));
  if (!file.error.empty()) return {};
  try {
    return std::string(stringMember(parseJson(file.text), "ERROR_MESSAGE"));
  } catch (const JsonFormatError&) {
    // The exit code has shown the failure; details only explain it.
    return {};
  }
}

bool isReserved(const std::string& name) {
  constexpr std::array<std::string_view, 22> kDeviceNames = {
      "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",
      "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9"};
  const std::string stem = name.substr(0, name.find('.'));
  return std::any_of(kDeviceNames.begin(), kDeviceNames.end(),
                     [&](std::string_view device) { return common::equalsIgnoreCase(stem, device); });
}

std::string safeFileName(std::string name) {
  name.resize(common::cutToBytes(name, kLongestFileName).size());
  for (char& c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F || std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos)
      c = '_';
  }
  // Neither hidden, nor "..", nor an ending that Windows would drop.
  if (name.front() == '.') name.front() = '_';
  if (name.back() == '.' || name.back() == ' ') name.back() = '_';
  return isReserved(name) ? "_" + name : name;
}

}  // namespace

std::string failureOf(const ClientMessage& ended) {
  const auto source = std::make_shared<const SourceText>(SourceText{ended.jobName, ended.syntax});
  std::optional<std::int32_t> code;
  for (const ScanResult::Item& item : scanCommands(source).items) {
    if (item.error) continue;
    if (isImport(item.command)) return {};
    if (!code) code = messageCode(item.command);
  }
  std::string sentence = readFailureSentence(platform::pathFromNarrow(ended.csvFilePath));
  if (!sentence.empty()) return sentence;
  if (!code || *code == kNoResultFile) return translated("the analysis wrote no results");
  const auto exitCode = static_cast<std::int32_t>(static_cast<std::uint32_t>(*code) - kExitCodeOffset);
  return translated("the analysis ended with exit code {1}", {std::to_string(exitCode)});
}

void removeLeftovers(const std::filesystem::path& csv) {
  std::error_code ignored;
  std::filesystem::remove(errorDetailsFile(csv), ignored);
  const std::filesystem::path progress = progressFileOf(csv);
  if (readJobProgress(progress)) std::filesystem::remove(progress, ignored);
}

void PostedJobs::onPost(ClientMessage& message) {
  const bool ended = message.kind == ClientMessage::Kind::Ended;
  const bool cancelled = ended && message.syntax.empty();
  // Sent while the command that submits the job runs, on its thread.
  const bool queued = message.kind == ClientMessage::Kind::Queued;
  if (queued && currentCommand() != nullptr) message.parameterSize = parameterSize(*currentCommand());
  // A job that begins has no files yet, and its predecessor's process has ended.
  if (message.kind == ClientMessage::Kind::Running) removeCancelledLeftovers();
  if (ended && !cancelled) {
    message.failure = failureOf(message);
    const std::filesystem::path csv = platform::pathFromNarrow(message.csvFilePath);
    removeLeftovers(csv);
    // An analysis that succeeded has left none, and the folder may be large.
    if (!message.failure.empty()) common::removeAbandonedParts(csv.parent_path());
  }
  const std::lock_guard lock(mutex_);
  names_.insert(message.jobName);
  if (!ended || message.csvFilePath.empty()) return;
  if (cancelled) {
    cancelled_.insert(message.csvFilePath);
  } else if (message.failure.empty()) {
    results_.insert(message.csvFilePath);
  }
}

std::set<std::string> PostedJobs::names() const {
  const std::lock_guard lock(mutex_);
  return names_;
}

void PostedJobs::forgetResult(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(unreadFileOf(platform::pathFromNarrow(path)), ignored);
  const std::lock_guard lock(mutex_);
  results_.erase(path);
}

void PostedJobs::removeResults() const {
  const std::lock_guard lock(mutex_);
  for (const std::string& path : results_) {
    std::error_code ignored;
    std::filesystem::remove(platform::pathFromNarrow(path), ignored);
    std::filesystem::remove(unreadFileOf(platform::pathFromNarrow(path)), ignored);
  }
}

void PostedJobs::removeCancelledLeftovers() {
  std::unique_lock lock(mutex_);
  const std::set<std::string> paths = std::exchange(cancelled_, {});
  lock.unlock();
  std::set<std::filesystem::path> folders;
  for (const std::string& path : paths) {
    const std::filesystem::path csv = platform::pathFromNarrow(path);
    removeLeftovers(csv);
    std::error_code ignored;
    std::filesystem::remove(unreadFileOf(csv), ignored);
    folders.insert(csv.parent_path());
  }
  for (const std::filesystem::path& folder : folders) {
    common::removeAbandonedParts(folder);
  }
}

std::string CopyNames::next(const std::string& jobName, const std::string& fallback) {
  const std::string wanted = jobName.empty() ? fallback : safeFileName(jobName);
  std::string name = wanted;
  for (int number = 2; !given_.insert(common::upperCase(name)).second; ++number) {
    name = wanted + "_" + std::to_string(number);
  }
  return name;
}

}  // namespace genostat::standalone
