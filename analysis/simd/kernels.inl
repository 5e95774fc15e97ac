// The kernels for one kind of vector unit; read once for each by kernels.cpp, hence no include guard.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace genostat::analysis::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// At most one block of positions wide, however wide the unit.
using Bytes = hn::CappedTag<std::uint8_t, kBlockSize>;
using Vector = hn::Vec<Bytes>;
using Sums = hn::Repartition<std::uint64_t, Bytes>;

HWY_INLINE const std::uint8_t* bytesOf(const char* text) {
  return reinterpret_cast<const std::uint8_t*>(text);
}

// Ones for the bytes from `from` to `from` + N of a block that belong to its first `size`.
HWY_INLINE Vector firstBytes(Bytes d, std::size_t size, std::size_t from = 0) {
  return hn::LoadU(d, kOnesThenZeros.data() + kBlockSize - size + from);
}

// One bit for each lane, the first lane's lowest.
template <class Mask>
HWY_INLINE std::uint64_t bitsOf(Bytes d, Mask mask) {
  std::uint64_t bits = 0;
  hn::StoreMaskBits(d, mask, reinterpret_cast<std::uint8_t*>(&bits));
  return bits;
}

void addCodes(const char* text, std::size_t size, std::uint64_t* sums) {
  const Sums d64;
  const hn::Rebind<std::uint8_t, Sums> d8;
  const std::size_t lanes = hn::Lanes(d64);
  std::size_t at = 0;
  for (; at + lanes <= size; at += lanes) {
    const auto codes = hn::PromoteTo(
        d64, hn::PromoteTo(hn::Rebind<std::uint32_t, Sums>(), hn::LoadU(d8, bytesOf(text) + at)));
    hn::StoreU(hn::Add(hn::LoadU(d64, sums + at), codes), d64, sums + at);
  }
  for (; at < size; ++at) {
    sums[at] += bytesOf(text)[at];
  }
}

std::size_t findLineFeeds(const char* text, std::size_t size, std::uint32_t* offsets) {
  const Bytes d;
  const std::size_t lanes = hn::Lanes(d);
  const Vector lineFeed = hn::Set(d, std::uint8_t{'\n'});
  std::uint32_t* next = offsets;
  for (std::size_t at = 0; at < size; at += kBlockSize) {
    std::uint64_t found = 0;
    for (std::size_t v = 0; v < kBlockSize; v += lanes) {
      found |= bitsOf(d, hn::Eq(hn::LoadU(d, bytesOf(text) + at + v), lineFeed)) << v;
    }
    if (size - at < kBlockSize) found &= (std::uint64_t{1} << (size - at)) - 1;
    for (; found != 0; found &= found - 1) {
      *next++ = static_cast<std::uint32_t>(at) + static_cast<std::uint32_t>(std::countr_zero(found));
    }
  }
  return static_cast<std::size_t>(next - offsets);
}

QualityRange sumQualities(std::span<const Record> records, std::uint64_t* sums) {
  const Bytes d;
  const Sums d64;
  const std::size_t lanes = hn::Lanes(d);
  Vector lowest = hn::Set(d, std::uint8_t{0xFF});
  Vector highest = hn::Zero(d);
  for (const Record& record : records) {
    const std::uint8_t* text = bytesOf(record.quality.data());
    const std::size_t size = record.quality.size();
    auto sum = hn::Zero(d64);
    std::size_t at = 0;
    for (; at + lanes <= size; at += lanes) {
      const Vector codes = hn::LoadU(d, text + at);
      sum = hn::Add(sum, hn::SumsOf8(codes));
      lowest = hn::Min(lowest, codes);
      highest = hn::Max(highest, codes);
    }
    if (at < size) {
      const Vector inside = firstBytes(d, size - at);
      const Vector codes = hn::And(hn::LoadU(d, text + at), inside);
      sum = hn::Add(sum, hn::SumsOf8(codes));
      lowest = hn::Min(lowest, hn::Or(codes, hn::Not(inside)));
      highest = hn::Max(highest, codes);
    }
    *sums++ = hn::GetLane(hn::SumOfLanes(d64, sum));
  }
  QualityRange range;
  std::array<std::uint8_t, kBlockSize> lanesOut;
  hn::StoreU(lowest, d, lanesOut.data());
  range.lowest = *std::min_element(lanesOut.begin(), lanesOut.begin() + static_cast<std::ptrdiff_t>(lanes));
  hn::StoreU(highest, d, lanesOut.data());
  range.highest = *std::max_element(lanesOut.begin(), lanesOut.begin() + static_cast<std::ptrdiff_t>(lanes));
  return range;
}

void countSequences(std::span<const Record> records, const std::uint64_t* gcLengths, SequenceCounts* counts) {
  const Bytes d;
  const std::size_t lanes = hn::Lanes(d);
  // Without these bits C, G, c and g are the same, and nothing else is.
  const Vector gcBits = hn::Set(d, std::uint8_t{0xDB});
  const Vector gc = hn::Set(d, std::uint8_t{'C'});
  const Vector caseBit = hn::Set(d, std::uint8_t{0x20});
  for (const Record& record : records) {
    const std::uint8_t* text = bytesOf(record.sequence.data());
    const std::size_t size = record.sequence.size();
    const std::size_t gcLength = *gcLengths++;
    SequenceCounts found;
    std::size_t at = 0;
    for (; at + lanes <= gcLength; at += lanes) {
      found.gc += hn::CountTrue(d, hn::Eq(hn::And(hn::LoadU(d, text + at), gcBits), gc));
    }
    if (at < gcLength) {
      const Vector masked = hn::And(hn::And(hn::LoadU(d, text + at), gcBits), firstBytes(d, gcLength - at));
      found.gc += hn::CountTrue(d, hn::Eq(masked, gc));
    }
    Vector seen = hn::Zero(d);
    for (at = 0; at + lanes < size; at += lanes) {
      const Vector here = hn::LoadU(d, text + at);
      found.changes += hn::CountTrue(d, hn::Ne(here, hn::LoadU(d, text + at + 1)));
      seen = hn::Or(seen, here);
    }
    if (at < size) {
      const Vector here = hn::LoadU(d, text + at);
      const Vector differences = hn::Xor(here, hn::LoadU(d, text + at + 1));
      const Vector compared = hn::And(differences, firstBytes(d, size - at - 1));
      found.changes += hn::CountTrue(d, hn::Ne(compared, hn::Zero(d)));
      seen = hn::Or(seen, hn::And(here, firstBytes(d, size - at)));
    }
    // Characters with this bit may be lower-case letters.
    if (!hn::AllTrue(d, hn::Eq(hn::And(seen, caseBit), hn::Zero(d)))) {
      found.changes = countChangesOfAnyCase(record.sequence);
    }
    *counts++ = found;
  }
}

// kShort: there are probes of fewer than 12 letters.
template <bool kShort>
HWY_INLINE std::size_t findProbesIn(std::span<const Record> records, const ProbeSet& probes, ProbeHit* hits) {
  const Bytes d;
  const std::size_t lanes = hn::Lanes(d);
  constexpr std::size_t kOffsets = ProbeSet::kFilterOffsets.size();
  // A lookup on x86 takes a byte's low four bits by itself, and gives zero if the highest is set: no letter
  // has it, but what follows a short probe may.
  constexpr bool kMask = kShort || !HWY_ARCH_X86 || HWY_TARGET == HWY_STATIC_TARGET;
  const Vector lowBits = hn::Set(d, std::uint8_t{0x0F});
  ProbeHit* next = hits;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const std::string_view sequence = records[i].sequence;
    if (sequence.size() < probes.shortest()) continue;
    const std::size_t starts = sequence.size() - probes.shortest() + 1;
    unsigned missing = (1U << probes.size()) - 1;
    for (std::size_t at = 0; at < starts && missing != 0; at += lanes) {
      Vector candidates = hn::Set(d, static_cast<std::uint8_t>(missing));
      HWY_UNROLL(6)
      for (std::size_t k = 0; k < kOffsets; ++k) {
        const Vector table = hn::LoadDup128(d, probes.filter()[k].data());
        Vector letters = hn::LoadU(d, bytesOf(sequence.data()) + at + ProbeSet::kFilterOffsets[k]);
        if constexpr (kMask) letters = hn::And(letters, lowBits);
        candidates = hn::And(candidates, hn::TableLookupBytes(table, letters));
      }
      std::uint64_t places = bitsOf(d, hn::Ne(candidates, hn::Zero(d)));
      if (starts - at < kBlockSize) places &= (std::uint64_t{1} << (starts - at)) - 1;
      if (HWY_LIKELY(places == 0)) continue;
      std::array<std::uint8_t, kBlockSize> flags;
      hn::StoreU(candidates, d, flags.data());
      for (; places != 0; places &= places - 1) {
        const auto lane = static_cast<std::size_t>(std::countr_zero(places));
        for (unsigned left = flags[lane] & missing; left != 0; left &= left - 1) {
          const auto probe = static_cast<unsigned>(std::countr_zero(left));
          const std::size_t offset = at + lane;
          if (!probes.matches(probe, sequence.data() + offset, sequence.size() - offset)) continue;
          missing &= ~(1U << probe);
          *next++ = {static_cast<std::uint32_t>(i), probe, offset};
        }
      }
    }
  }
  return static_cast<std::size_t>(next - hits);
}

std::size_t findProbes(std::span<const Record> records, const ProbeSet& probes, ProbeHit* hits) {
  return probes.shortest() < ProbeSet::kLongest ? findProbesIn<true>(records, probes, hits)
                                                : findProbesIn<false>(records, probes, hits);
}

#include "analysis/simd/plane_kernels.inl"

const Kernels& kernels() {
  static const Kernels kKernels = {hwy::TargetName(HWY_TARGET),
                                   findLineFeeds,
                                   sumQualities,
                                   countSequences,
                                   findProbes,
                                   addCodes,
                                   addBases,
                                   addQualities};
  return kKernels;
}

}  // namespace genostat::analysis::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
