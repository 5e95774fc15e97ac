#include "standalone/console/view/output_file.h"

#include <stdexcept>
#include <system_error>

#include "common/files/path_fault.h"
#include "platform/path_text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

[[noreturn]] void failToWrite(const std::string& name, const std::string& reason) {
  throw std::runtime_error(common::cannotWrite(name, reason, translated));
}

std::string reasonOf(const std::system_error& failure) {
  if (failure.code() == std::errc::is_a_directory) return translated("it is a folder");
  const bool noFolder =
      failure.code() == std::errc::no_such_file_or_directory || failure.code() == std::errc::not_a_directory;
  return noFolder ? translated("its folder does not exist") : translatedReason(failure.what());
}

}  // namespace

common::OutputFile prepareOutputFile(const std::string& name) {
  try {
    common::OutputFile file(platform::pathFromUtf8(name));
    // Some would be written to for ever, others disturb what is shown.
    if (file.isDevice()) failToWrite(name, translated("it is no regular file"));
    return file;
  } catch (const std::system_error& failure) {
    failToWrite(name, reasonOf(failure));
  }
}

void writeOutputFile(const common::OutputFile& file, std::string_view text) {
  try {
    file.write(text);
  } catch (const std::system_error& failure) {
    failToWrite(platform::pathToUtf8(file.target()), reasonOf(failure));
  }
}

}  // namespace genostat::standalone
