// Any bytes as a file: what zlib inflates is the text, whatever the size of the chunks, and nothing else is
// ever called good. The input is the size of the chunks in 64 bytes, less one, and the file.
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/fastq/chunk_source.h"
#include "tests/fuzz/require.h"

namespace {

using genostat::analysis::ByteSource;
using genostat::analysis::Chunk;
using genostat::test::require;

constexpr std::size_t kMaxText = std::size_t{1} << 17;

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}

  std::size_t read(std::span<char> into) override {
    const std::size_t size = bytes_.copy(into.data(), into.size());
    bytes_.remove_prefix(size);
    return size;
  }

 private:
  std::string_view bytes_;
};

struct Outcome {
  std::string text;
  std::string defect;
  bool tooLong = false;
};

Outcome unpack(std::string_view bytes, std::size_t chunkSize) {
  const auto source = genostat::analysis::openChunks(std::make_unique<MemorySource>(bytes), chunkSize);
  Outcome outcome;
  Chunk chunk;
  while (outcome.defect.empty() && source->fetch(chunk)) {
    source->expand(chunk);
    outcome.text.append(chunk.text.data(), chunk.size);
    outcome.defect = chunk.defect;
    outcome.tooLong = outcome.text.size() > kMaxText;
    if (outcome.tooLong) break;
  }
  return outcome;
}

// The text of a file that is good in zlib's eyes; none when it is not, or is too long.
std::optional<std::string> zlibText(std::string_view bytes) {
  std::string in(bytes);
  std::vector<char> room(kMaxText);
  std::string text;
  z_stream stream = {};
  stream.next_in = reinterpret_cast<Bytef*>(in.data());
  stream.avail_in = static_cast<uInt>(in.size());
  while (stream.avail_in > 0) {
    if (inflateInit2(&stream, MAX_WBITS + 16) != Z_OK) return std::nullopt;
    stream.next_out = reinterpret_cast<Bytef*>(room.data());
    stream.avail_out = static_cast<uInt>(room.size());
    const int result = inflate(&stream, Z_FINISH);
    const std::size_t size = room.size() - stream.avail_out;
    inflateEnd(&stream);
    text.append(room.data(), size);
    if (result != Z_STREAM_END || text.size() > kMaxText) return std::nullopt;
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const Outcome outcome = unpack(bytes, (std::size_t{data[0]} + 1) * 64);
  if (outcome.tooLong) return 0;

  const Outcome whole = unpack(bytes, 2 * kMaxText);
  require(outcome.defect == whole.defect, '\'' + outcome.defect + "' in one chunk: '" + whole.defect + '\'');
  // Of the text before a defect a little may be missing, less with small chunks.
  require(outcome.defect.empty() ? outcome.text == whole.text : outcome.text.starts_with(whole.text),
          "the text does not depend on the chunks");

  if (!bytes.starts_with("\x1f\x8b")) {
    require(outcome.defect.empty() && outcome.text == bytes, "plain text stays as it is");
    return 0;
  }
  const std::optional<std::string> expected = zlibText(bytes);
  if (!expected) return 0;
  // zlib does not look at the size that a block tells.
  const bool blocks = bytes.find(std::string_view("BC\2\0", 4)) != std::string_view::npos;
  require(blocks || outcome.defect.empty(), "a good file has no defect: " + outcome.defect);
  require(!outcome.defect.empty() || outcome.text == *expected, "the text is right");
  return 0;
}
