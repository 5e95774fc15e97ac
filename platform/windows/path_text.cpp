#include "platform/path_text.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace genostat::platform {

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return widen(utf8, CP_UTF8);
}
std::string pathToUtf8(const std::filesystem::path& path) {
  return narrow(path.native(), CP_UTF8);
}
std::string pathToNarrow(const std::filesystem::path& path) {
  return narrow(path.native(), CP_ACP);
}
std::filesystem::path pathFromNarrow(std::string_view text) {
  return widen(text, CP_ACP);
}

}  // namespace genostat::platform
