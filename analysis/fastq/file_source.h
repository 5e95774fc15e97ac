// The bytes of a file as they are.
#pragma once

#include <filesystem>

#include "analysis/fastq/byte_source.h"
#include "platform/input_file.h"

namespace genostat::analysis {

class FileSource : public ByteSource {
 public:
  // Throws std::system_error with the system's reason when the file cannot be opened.
  explicit FileSource(const std::filesystem::path& path) : file_(path) {}

  std::size_t read(std::span<char> into) override;
  std::uint64_t size() const override { return file_.size(); }
  std::size_t readAt(std::uint64_t offset, std::span<char> into) const override;

 private:
  platform::InputFile file_;
  std::uint64_t offset_ = 0;  // of the next read()
};

}  // namespace genostat::analysis
