// The bytes of a file as they are.
#pragma once

#include <filesystem>
#include <fstream>

#include "analysis/fastq/byte_source.h"

namespace genostat::analysis {

class FileSource : public ByteSource {
 public:
  // Throws std::system_error with the system's reason when the file cannot be opened.
  explicit FileSource(const std::filesystem::path& path);

  std::size_t read(std::span<char> into) override;

 private:
  std::filebuf file_;
};

}  // namespace genostat::analysis
