#include "platform/path_text.h"

namespace genostat::platform {

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(utf8);
}
std::string pathToUtf8(const std::filesystem::path& path) {
  return path.string();
}
std::string pathToNarrow(const std::filesystem::path& path) {
  return path.string();
}
std::filesystem::path pathFromNarrow(std::string_view narrow) {
  return std::filesystem::path(narrow);
}

}  // namespace genostat::platform
