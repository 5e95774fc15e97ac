#include "standalone/syntax/text_file.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

#include "common/files/path_fault.h"
#include "common/text/utf8.h"
#include "platform/path_text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

TextFile unreadable(const std::string& name, const std::string& reason) {
  return {{}, common::cannotRead(name, reason, translated)};
}

}  // namespace

TextFile readTextFile(const std::filesystem::path& file) {
  const std::string name = platform::pathToUtf8(file);
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::not_found)
    return unreadable(name, common::nothingThere(name, common::Expected::File, translated));
  if (status.type() == std::filesystem::file_type::directory)
    return unreadable(name, translated("it is a folder"));
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    const int code = errno;
    return unreadable(name, code != 0 ? translatedReason(std::generic_category().message(code))
                                      : translated("it cannot be opened"));
  }
  return readTextStream(stream, name);
}

TextFile readTextStream(std::istream& stream, const std::string& name) {
  TextFile file;
  std::vector<char> buffer(1 << 16);
  while (stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size())), stream.gcount() > 0) {
    file.text.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
  }
  if (stream.bad()) return unreadable(name, translated("reading failed"));
  if (file.text.starts_with(common::kByteOrderMark)) file.text.erase(0, common::kByteOrderMark.size());
  return file;
}

}  // namespace genostat::standalone
