#include "platform/dynamic_library.h"

#include <windows.h>

#include "platform/handle.h"

namespace genostat::platform {

const char* const kLibrarySuffix = ".dll";

std::unique_ptr<DynamicLibrary> DynamicLibrary::open(const std::filesystem::path& path, std::string& error) {
  HMODULE handle = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle == nullptr) {
    error = lastError().message();
    return nullptr;
  }
  return std::unique_ptr<DynamicLibrary>(new DynamicLibrary(handle));
}

void* DynamicLibrary::symbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace genostat::platform
