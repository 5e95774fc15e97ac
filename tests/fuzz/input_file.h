// The input as a file, for what reads files by their names.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "tests/support/temporary_folder.h"

namespace genostat::test {

// In one folder, which goes with the process; overwritten each time.
inline std::filesystem::path writeInput(const std::string& name, std::string_view content) {
  static const TemporaryFolder folder;
  std::filesystem::path file = folder.path() / name;
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

inline std::string_view textOf(const unsigned char* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace genostat::test
