// Where the bytes of a FASTQ text come from.
#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>

namespace genostat::analysis {

// Reading or decompressing went wrong; what() says how, without the file's name.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A stream of bytes, read once from start to end by one thread.
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
};

}  // namespace genostat::analysis
