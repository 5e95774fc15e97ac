// By ISA-L, whose inner loops are written for vector units.
#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <limits>

#include "analysis/fastq/inflate/inflater.h"

namespace genostat::analysis {

namespace {

constexpr std::size_t kLimit = std::numeric_limits<std::uint32_t>::max();

}  // namespace

struct Inflater::State {
  inflate_state stream;
  // A defect was met while text made before it waits in the library's own buffer.
  bool defectWaits = false;

  void give(std::span<const char> packed, std::span<char> text) {
    // The library takes its input through a pointer to non-const bytes and does not change them.
    stream.next_in = reinterpret_cast<std::uint8_t*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<std::uint32_t>(std::min(packed.size(), kLimit));
    stream.next_out = reinterpret_cast<std::uint8_t*>(text.data());
    stream.avail_out = static_cast<std::uint32_t>(std::min(text.size(), kLimit));
  }

  // Takes note of a defect, of which `made` bytes have just come out; returns how many of them are right.
  std::size_t meetDefect(int result, std::size_t made) {
    // When a match has no distance, or one that reaches too far back, vector code counts its length as made
    // but writes nothing. How long it was is not known: as much goes as it can have been.
    const auto waiting = static_cast<std::size_t>(stream.tmp_out_valid - stream.tmp_out_processed);
    const bool inMatch = result == ISAL_INVALID_LOOKBACK || result == ISAL_INVALID_SYMBOL;
    std::size_t wrong = inMatch ? std::size_t{ISAL_DEF_MAX_MATCH} : 0;
    stream.tmp_out_valid -= static_cast<std::int32_t>(std::min(wrong, waiting));
    wrong -= std::min(wrong, waiting);
    defectWaits = true;
    return made - std::min(wrong, made);
  }

  // Delivers what waits before the defect.
  Step deliverWaiting(const char* next, std::span<char> text) {
    const auto waiting = static_cast<std::size_t>(stream.tmp_out_valid - stream.tmp_out_processed);
    const std::size_t made = std::min(waiting, text.size());
    std::copy_n(stream.tmp_out_buffer + stream.tmp_out_processed, made,
                reinterpret_cast<std::uint8_t*>(text.data()));
    stream.tmp_out_processed += static_cast<std::int32_t>(made);
    return {made < waiting ? Outcome::OutputFull : Outcome::Corrupt, next, made};
  }

  // Whole bytes waiting in the bit buffer have not been needed.
  const char* next() const {
    return reinterpret_cast<const char*>(stream.next_in) - std::max(stream.read_in_length, 0) / 8;
  }
};

// Not value-initialised: most of its 90 KB is room for history.
Inflater::Inflater() : state_(std::make_unique_for_overwrite<State>()) {
  isal_inflate_init(&state_->stream);
}

Inflater::~Inflater() = default;

void Inflater::restart() {
  isal_inflate_reset(&state_->stream);
  state_->defectWaits = false;
}

Inflater::Step Inflater::inflate(std::span<const char> packed, std::span<char> text) {
  inflate_state& stream = state_->stream;
  if (state_->defectWaits) return state_->deliverWaiting(packed.data(), text);
  state_->give(packed, text);
  const std::uint32_t room = stream.avail_out;
  const int result = isal_inflate(&stream);
  Step step{Outcome::NeedsInput, reinterpret_cast<const char*>(stream.next_in), room - stream.avail_out};
  if (result < 0) {
    step.next = state_->next();
    step.made = state_->meetDefect(result, step.made);
    const Step rest = state_->deliverWaiting(step.next, text.subspan(step.made));
    step.made += rest.made;
    step.outcome = rest.outcome;
  } else if (stream.block_state == ISAL_BLOCK_FINISH) {
    step.outcome = Outcome::Finished;
    step.next = state_->next();
  } else if (stream.avail_out == 0) {
    step.outcome = Outcome::OutputFull;
  }
  return step;
}

bool Inflater::inflateWhole(std::span<const char> packed, std::span<char> text) {
  inflate_state& stream = state_->stream;
  isal_inflate_reset(&stream);
  state_->give(packed, text);
  return isal_inflate_stateless(&stream) == ISAL_DECOMP_OK && stream.avail_out == 0 &&
         state_->next() == packed.data() + packed.size();
}

std::uint32_t crc32(std::uint32_t sum, std::span<const char> text) {
  return crc32_gzip_refl(sum, reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

}  // namespace genostat::analysis
