// The bytes of a file as they are.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "analysis/fastq/byte_source.h"

namespace genostat::analysis {

class FileSource : public ByteSource {
 public:
  // Throws std::system_error with the system's reason when the file cannot be opened.
  explicit FileSource(const std::filesystem::path& path);

  // Whether the file begins with these bytes. Only before the first read; takes nothing away.
  bool startsWith(std::string_view magic);

  std::size_t read(std::span<char> into) override;

 private:
  std::size_t readFile(std::span<char> into);

  std::filebuf file_;
  std::string head_;  // bytes that startsWith() took from the file, not yet read
};

}  // namespace genostat::analysis
