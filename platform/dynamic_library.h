// Libraries that are loaded at run time.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace genostat::platform {

// A file name for dynamic libraries: ".dll" or ".so".
extern const char* const kLibrarySuffix;

// A dynamic library, kept loaded until the program ends.
class DynamicLibrary {
 public:
  // Null when it cannot be loaded; `error` then says why.
  static std::unique_ptr<DynamicLibrary> open(const std::filesystem::path& path, std::string& error);

  // Null when the library does not export the name.
  void* symbol(const char* name) const;

 private:
  explicit DynamicLibrary(void* handle) : handle_(handle) {}
  void* handle_;
};

}  // namespace genostat::platform
