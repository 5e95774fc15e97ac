// What stands around the deflate data of a gzip member (RFC 1952), and the mark of a bgzf block.
//
// A bgzf file is a gzip file whose members are small and state their own size: the header has an extra field
// "BC" with the size of the whole member less one. So members can be found without inflating and inflated
// apart from each other. Their text has at most 64 KiB.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace genostat::analysis {

constexpr std::size_t kMaxBlockText = std::size_t{64} << 10;
constexpr std::size_t kMaxBlockSize = std::size_t{64} << 10;
constexpr std::size_t kTrailerSize = 8;

struct MemberHeader {
  enum class State {
    Whole,
    Cut,      // the bytes end inside the header, which is right so far
    Foreign,  // the bytes do not begin with a gzip member
    Wrong,    // see `reason`
  };
  State state = State::Cut;
  std::size_t size = 0;                   // of the header
  std::optional<std::size_t> memberSize;  // of header, deflate data and trailer, as a bgzf block states it
  const char* reason = "";
};

// Looks at the member that begins at the front of `bytes`, which may end anywhere.
MemberHeader parseMemberHeader(std::span<const char> bytes);

struct MemberTrailer {
  std::uint32_t sum = 0;
  std::uint32_t textSize = 0;  // modulo 2^32
};

// `bytes` are kTrailerSize bytes.
MemberTrailer parseMemberTrailer(std::span<const char> bytes);

// "the compressed data are corrupt (reason), at byte N of the file".
std::string corruptAt(const char* reason, std::uint64_t offset);
// "sentence, at byte N of the file".
std::string located(const char* sentence, std::uint64_t offset);

}  // namespace genostat::analysis
