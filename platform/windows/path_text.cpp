#include "platform/path_text.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace genostat::platform {

std::wstring widen(std::string_view text, unsigned codePage) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
  return wide;
}

std::string narrow(std::wstring_view wide, unsigned codePage) {
  if (wide.empty()) return {};
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

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
