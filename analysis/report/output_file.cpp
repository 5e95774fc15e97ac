#include "analysis/report/output_file.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "platform/program.h"

namespace genostat::analysis {

namespace {

[[noreturn]] void fail() {
  const int code = errno;
  throw std::runtime_error(code != 0 ? std::generic_category().message(code) : "the system gives no reason");
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& target) : target_(target), part_(target) {
  part_ += ".part";
  errno = 0;
  if (file_.open(part_, std::ios::out | std::ios::binary | std::ios::trunc) == nullptr) fail();
}

OutputFile::~OutputFile() {
  if (part_.empty()) return;
  // Windows removes no open file.
  file_.close();
  std::error_code ignored;
  std::filesystem::remove(part_, ignored);
}

void OutputFile::write(std::string_view text) {
  errno = 0;
  const auto size = static_cast<std::streamsize>(text.size());
  if (file_.sputn(text.data(), size) != size) fail();
}

void OutputFile::commit() {
  errno = 0;
  if (file_.close() == nullptr) fail();
  const std::string reason = platform::replaceFile(part_, target_);
  if (!reason.empty()) throw std::runtime_error(reason);
  part_.clear();
}

void writeFile(const std::filesystem::path& target, std::string_view text) {
  OutputFile file(target);
  file.write(text);
  file.commit();
}

}  // namespace genostat::analysis
