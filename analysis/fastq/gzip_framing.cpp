#include "analysis/fastq/gzip_framing.h"

#include <algorithm>

#include "analysis/fastq/inflate/inflater.h"

namespace genostat::analysis {

namespace {

constexpr std::size_t kFixedSize = 10;
constexpr std::uint8_t kDeflate = 8;

// Flags of the header.
constexpr unsigned kHeaderSum = 2;
constexpr unsigned kExtra = 4;
constexpr unsigned kName = 8;
constexpr unsigned kComment = 16;
constexpr unsigned kUnknown = 0xE0;

// Longer names and comments are no use to anybody.
constexpr std::size_t kMaxHeaderSize = std::size_t{1} << 20;

std::uint32_t byteAt(std::span<const char> bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

std::uint32_t shortAt(std::span<const char> bytes, std::size_t at) {
  return byteAt(bytes, at) | byteAt(bytes, at + 1) << 8;
}

std::uint32_t longAt(std::span<const char> bytes, std::size_t at) {
  return shortAt(bytes, at) | shortAt(bytes, at + 2) << 16;
}

// The block size that a "BC" field among the extra fields states.
std::optional<std::size_t> blockSize(std::span<const char> fields) {
  constexpr std::size_t kFieldHead = 4;
  while (fields.size() >= kFieldHead) {
    const std::size_t size = kFieldHead + shortAt(fields, 2);
    if (size > fields.size()) break;
    if (fields[0] == 'B' && fields[1] == 'C' && size == kFieldHead + 2) {
      return std::size_t{shortAt(fields, kFieldHead)} + 1;
    }
    fields = fields.subspan(size);
  }
  return std::nullopt;
}

MemberHeader wrong(const char* reason) {
  return {MemberHeader::State::Wrong, 0, std::nullopt, reason};
}

}  // namespace

MemberHeader parseMemberHeader(std::span<const char> bytes) {
  constexpr char kMagic[] = {'\x1f', '\x8b'};
  for (std::size_t i = 0; i < std::min(bytes.size(), std::size(kMagic)); ++i) {
    if (bytes[i] != kMagic[i]) return {MemberHeader::State::Foreign, 0, std::nullopt, ""};
  }
  const MemberHeader cut = bytes.size() < kMaxHeaderSize ? MemberHeader{} : wrong("endless header");
  if (bytes.size() < kFixedSize) return cut;
  if (byteAt(bytes, 2) != kDeflate) return wrong("unknown method");
  const unsigned flags = byteAt(bytes, 3);
  if ((flags & kUnknown) != 0) return wrong("unknown flags");

  MemberHeader header{MemberHeader::State::Whole, kFixedSize, std::nullopt, ""};
  if ((flags & kExtra) != 0) {
    if (bytes.size() < header.size + 2) return cut;
    const std::size_t fieldsSize = shortAt(bytes, header.size);
    header.size += 2;
    if (bytes.size() < header.size + fieldsSize) return cut;
    header.memberSize = blockSize(bytes.subspan(header.size, fieldsSize));
    header.size += fieldsSize;
  }
  for (const unsigned text : {kName, kComment}) {
    if ((flags & text) == 0) continue;
    const std::span<const char> rest = bytes.subspan(header.size);
    const auto end = std::find(rest.begin(), rest.end(), '\0');
    if (end == rest.end()) return cut;
    header.size += static_cast<std::size_t>(end - rest.begin()) + 1;
  }
  if ((flags & kHeaderSum) != 0) {
    if (bytes.size() < header.size + 2) return cut;
    const std::uint32_t sum = crc32(0, bytes.first(header.size)) & 0xFFFF;
    if (sum != shortAt(bytes, header.size)) return wrong("wrong header checksum");
    header.size += 2;
  }
  return header;
}

MemberTrailer parseMemberTrailer(std::span<const char> bytes) {
  return {longAt(bytes, 0), longAt(bytes, 4)};
}

std::string corruptAt(const char* reason, std::uint64_t offset) {
  return located(("the compressed data are corrupt (" + std::string(reason) + ")").c_str(), offset);
}

std::string located(const char* sentence, std::uint64_t offset) {
  return std::string(sentence) + ", at byte " + std::to_string(offset) + " of the file";
}

}  // namespace genostat::analysis
