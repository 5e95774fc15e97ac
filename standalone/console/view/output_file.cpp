#include "standalone/console/view/output_file.h"

#include <stdexcept>
#include <system_error>

#include "common/files/part_file.h"
#include "platform/path_text.h"
#include "standalone/language/system_reason.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace fs = std::filesystem;

OutputFile::OutputFile(const std::string& name) : name_(name) {
  std::error_code error;
  const fs::path given = platform::pathFromUtf8(name);
  target_ = fs::weakly_canonical(fs::absolute(given, error), error);
  if (error) target_ = given;
  const fs::file_status status = fs::status(target_, error);
  if (fs::is_directory(status)) fail(translated("it is a folder"));
  // A device would be replaced by a file.
  if (fs::exists(status) && !fs::is_regular_file(status)) fail(translated("it is no regular file"));
  const fs::path folder = target_.parent_path();
  if (!fs::is_directory(folder, error)) fail(translated("its folder does not exist"));
  common::removeAbandonedParts(folder);
  try {
    common::createPart(folder);
  } catch (const std::runtime_error& reason) {
    fail(reason.what());
  }
}

void OutputFile::write(std::string_view text) const {
  try {
    platform::LockedFile part = common::createPart(target_.parent_path());
    part.write(text);
    part.moveTo(target_);
  } catch (const std::runtime_error& reason) {
    fail(reason.what());
  }
}

bool OutputFile::isSameAs(const fs::path& other) const {
  std::error_code error;
  return fs::weakly_canonical(fs::absolute(other, error), error) == target_ ||
         fs::equivalent(other, target_, error);
}

void OutputFile::fail(const std::string& reason) const {
  throw std::runtime_error(
      translated("cannot write {1}: {2}", {quoteForMessage(name_), translatedReason(reason)}));
}

}  // namespace genostat::standalone
