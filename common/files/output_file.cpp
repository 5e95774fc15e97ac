#include "common/files/output_file.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "common/files/part_file.h"

namespace genostat::common {

namespace {

[[noreturn]] void fail() {
  const int code = errno;
  throw std::runtime_error(code != 0 ? std::generic_category().message(code) : "the system gives no reason");
}

// Where the links end; a link to nothing is replaced itself.
std::filesystem::path followed(const std::filesystem::path& target) {
  std::error_code error;
  if (!std::filesystem::is_symlink(target, error)) return target;
  const std::filesystem::path end = std::filesystem::canonical(target, error);
  return error ? target : end;
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& target) : target_(followed(target)) {
  std::error_code ignored;
  if (std::filesystem::is_directory(target_, ignored)) {
    throw std::runtime_error(std::generic_category().message(EISDIR));
  }
  if (!std::filesystem::is_other(target_, ignored)) part_.emplace(createPart(target_.parent_path()));
}

void OutputFile::write(std::string_view text) {
  if (part_) return part_->write(text);
  errno = 0;
  if (!device_.is_open() && device_.open(target_, std::ios::out | std::ios::binary) == nullptr) fail();
  const auto size = static_cast<std::streamsize>(text.size());
  if (device_.sputn(text.data(), size) != size) fail();
}

void OutputFile::commit() {
  if (part_) {
    part_->moveTo(target_);
    removeAbandonedParts(target_.parent_path());
    return;
  }
  errno = 0;
  if (device_.is_open() && device_.close() == nullptr) fail();
}

void writeFile(const std::filesystem::path& target, std::string_view text) {
  OutputFile file(target);
  file.write(text);
  file.commit();
}

}  // namespace genostat::common
