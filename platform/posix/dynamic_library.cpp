#include "platform/dynamic_library.h"

#include <dlfcn.h>

namespace genostat::platform {

const char* const kLibrarySuffix = ".so";

std::unique_ptr<DynamicLibrary> DynamicLibrary::open(const std::filesystem::path& path, std::string& error) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* text = dlerror();
    error = text != nullptr ? text : "unknown reason";
    return nullptr;
  }
  return std::unique_ptr<DynamicLibrary>(new DynamicLibrary(handle));
}

void* DynamicLibrary::symbol(const char* name) const {
  return dlsym(handle_, name);
}

}  // namespace genostat::platform
