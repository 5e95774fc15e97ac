#include "platform/environment.h"

#include <windows.h>

#include <cstdlib>
#include <string>

#include "platform/windows/wide_text.h"

namespace genostat::platform {

std::filesystem::path environmentPath(const char* name) {
  const std::wstring wideName = std::filesystem::path(name).native();
  // As long as the longest value of all.
  std::wstring value(32768, L'\0');
  value.resize(GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return value;
}

void setEnvironmentPath(const char* name, const std::filesystem::path& value) {
  // Also for those who ask the C library.
  _wputenv_s(std::filesystem::path(name).c_str(), value.c_str());
}

std::vector<std::string> systemLanguages() {
  ULONG count = 0;
  ULONG size = 0;
  if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &size)) return {};
  std::wstring names(size, L'\0');
  if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &size)) return {};
  // Each ends with a null, and another one ends the list.
  std::vector<std::string> languages;
  for (std::size_t begin = 0; begin < names.size() && names[begin] != L'\0';) {
    const std::wstring name(names.c_str() + begin);
    languages.push_back(narrow(name, CP_UTF8));
    begin += name.size() + 1;
  }
  return languages;
}

}  // namespace genostat::platform
