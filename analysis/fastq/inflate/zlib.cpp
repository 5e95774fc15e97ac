// By zlib, which is at hand for every system.
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>

#include "analysis/fastq/inflate/inflater.h"

namespace genostat::analysis {

namespace {

constexpr std::size_t kLimit = std::numeric_limits<uInt>::max();
// Negative: neither a header nor a trailer around the deflate data.
constexpr int kRawWindowBits = -MAX_WBITS;

}  // namespace

struct Inflater::State {
  z_stream stream = {};

  State() {
    if (inflateInit2(&stream, kRawWindowBits) != Z_OK) throw std::bad_alloc();
  }
  ~State() { inflateEnd(&stream); }

  int run(std::span<const char> packed, std::span<char> text, int flush) {
    // The library takes its input through a pointer to non-const bytes and does not change them.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(std::min(packed.size(), kLimit));
    stream.next_out = reinterpret_cast<Bytef*>(text.data());
    stream.avail_out = static_cast<uInt>(std::min(text.size(), kLimit));
    const int result = ::inflate(&stream, flush);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    return result;
  }
};

Inflater::Inflater() : state_(std::make_unique<State>()) {}

Inflater::~Inflater() = default;

void Inflater::restart() {
  inflateReset(&state_->stream);
}

Inflater::Step Inflater::inflate(std::span<const char> packed, std::span<char> text) {
  const int result = state_->run(packed, text, Z_NO_FLUSH);
  const z_stream& stream = state_->stream;
  Step step{Outcome::Corrupt, reinterpret_cast<const char*>(stream.next_in),
            static_cast<std::size_t>(reinterpret_cast<char*>(stream.next_out) - text.data())};
  if (result == Z_STREAM_END) {
    step.outcome = Outcome::Finished;
  } else if (result == Z_OK || result == Z_BUF_ERROR) {
    step.outcome = stream.avail_out == 0 ? Outcome::OutputFull : Outcome::NeedsInput;
  }
  return step;
}

bool Inflater::inflateWhole(std::span<const char> packed, std::span<char> text) {
  inflateReset(&state_->stream);
  const bool ended = state_->run(packed, text, Z_FINISH) == Z_STREAM_END;
  return ended && state_->stream.avail_in == 0 && state_->stream.avail_out == 0;
}

std::uint32_t crc32(std::uint32_t sum, std::span<const char> text) {
  return static_cast<std::uint32_t>(crc32_z(sum, reinterpret_cast<const Bytef*>(text.data()), text.size()));
}

}  // namespace genostat::analysis
