// Where the bytes of a FASTQ text come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>

namespace genostat::analysis {

// Reading or decompressing went wrong; what() says how, without the file's name.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A stream of bytes, read once from start to end by one thread; or, where that is possible, at any place.
class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  // Fills the front of `into` (not empty) and returns how many bytes it holds now: fewer than asked
  // for at any time, 0 only at the end. All bytes before a defect are delivered before the
  // SourceError about it is thrown.
  virtual std::size_t read(std::span<char> into) = 0;

  // How many bytes there are, where readAt() can be used; else 0.
  virtual std::uint64_t size() const { return 0; }
  // The same as read(), for the bytes from `offset` on. Any number of threads at once.
  virtual std::size_t readAt(std::uint64_t offset, std::span<char> into) const {
    (void)offset;
    (void)into;
    return 0;
  }
};

// A file's bytes. Throws std::system_error with the system's reason when it cannot be opened.
std::unique_ptr<ByteSource> openFile(const std::filesystem::path& path);

// Those of a pipe or another file that is only read once; waits for its writer. Throws as above.
std::unique_ptr<ByteSource> openPipe(const std::filesystem::path& path);

// Standard input's bytes; there is one standard input, so use one of these at a time. On systems where text
// and binary streams differ the program must have switched it to binary (platform::prepareStandardStreams).
std::unique_ptr<ByteSource> openStandardInput();

}  // namespace genostat::analysis
