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

// The flags of one vector of positions, of kGroups groups of eight.
template <std::size_t kGroups>
struct Flags {
  Vector group[kGroups];
};

// Each bit of `yes` where the mask's is set, else that of `no`.
HWY_INLINE Vector chooseBits(Vector mask, Vector yes, Vector no) {
  if constexpr (HWY_TARGET <= HWY_AVX3) {
    return hn::IfVecThenElse(mask, yes, no);  // one instruction; on smaller units it would choose whole bytes
  } else {
    return hn::OrAnd(hn::AndNot(mask, no), mask, yes);
  }
}

// Adds two vectors of flags to a plane; the carries belong to the next level.
template <std::size_t kGroups>
HWY_INLINE Flags<kGroups> addToPlane(Flags<kGroups>& plane, const Flags<kGroups>& a,
                                     const Flags<kGroups>& b) {
  Flags<kGroups> carry;
  for (std::size_t g = 0; g < kGroups; ++g) {
    const Vector half = hn::Xor(plane.group[g], a.group[g]);
    // Where plane and a are equal they decide about the carry, else b does.
    carry.group[g] = chooseBits(half, b.group[g], a.group[g]);
    plane.group[g] = hn::Xor(half, b.group[g]);
  }
  return carry;
}

// Adds 2^kDepth lines from `first` on to the planes of the levels below kDepth and returns the carries.
template <std::size_t kDepth, class Lines>
HWY_INLINE Flags<Lines::kGroups> addLines(const Lines& lines, Flags<Lines::kGroups>* planes,
                                          std::size_t first) {
  if constexpr (kDepth == 0) {
    return lines.flags(first);
  } else {
    const auto a = addLines<kDepth - 1>(lines, planes, first);
    const auto b = addLines<kDepth - 1>(lines, planes, first + (std::size_t{1} << (kDepth - 1)));
    return addToPlane(planes[kDepth - 1], a, b);
  }
}

// The bulk of the work; a function of its own, since it is long.
template <class Lines>
HWY_NOINLINE Flags<Lines::kGroups> addSixteen(const Lines& lines, Flags<Lines::kGroups>* planes,
                                              std::size_t first) {
  return addLines<4>(lines, planes, first);
}

template <std::size_t kGroups>
using Segments = std::array<PlaneSegment*, kGroups>;

// Some levels of the planes, as long as they are worked on.
template <std::size_t kGroups, std::size_t kLevels>
struct OpenPlanes {
  HWY_INLINE OpenPlanes(const Segments<kGroups>& segments, std::size_t offset) {
    for (std::size_t level = 0; level < kLevels; ++level) {
      for (std::size_t g = 0; g < kGroups; ++g) {
        place[level][g] = segments[g]->level(level) + offset;
        planes[level].group[g] = hn::Load(Bytes(), place[level][g]);
      }
    }
  }
  HWY_INLINE void store() const {
    for (std::size_t level = 0; level < kLevels; ++level) {
      for (std::size_t g = 0; g < kGroups; ++g) {
        hn::Store(planes[level].group[g], Bytes(), place[level][g]);
      }
    }
  }

  Flags<kGroups> planes[kLevels + 1];  // one more: there may be no level at all
  std::uint8_t* place[kLevels + 1][kGroups];
};

// Carries go up until none is left.
template <std::size_t kGroups>
HWY_INLINE void ripple(const Segments<kGroups>& segments, std::size_t offset, std::size_t level,
                       const Flags<kGroups>& carries) {
  const Bytes d;
  for (std::size_t g = 0; g < kGroups; ++g) {
    Vector carry = carries.group[g];
    for (std::size_t at = level; !hn::AllTrue(d, hn::Eq(carry, hn::Zero(d))); ++at) {
      std::uint8_t* place = segments[g]->level(at) + offset;
      const Vector plane = hn::Load(d, place);
      hn::Store(hn::Xor(plane, carry), d, place);
      carry = hn::And(plane, carry);
    }
  }
}

template <std::size_t kDepth, class Lines>
HWY_INLINE void addFew(const Lines& lines, const Segments<Lines::kGroups>& segments, std::size_t offset) {
  OpenPlanes<Lines::kGroups, kDepth> open(segments, offset);
  Flags<Lines::kGroups> carry;
  if constexpr (kDepth == 4) {
    carry = addSixteen(lines, open.planes, 0);
  } else {
    carry = addLines<kDepth>(lines, open.planes, 0);
  }
  open.store();
  ripple(segments, offset, kDepth, carry);
}

template <class Lines>
HWY_INLINE void addMany(const Lines& lines, std::size_t count, const Segments<Lines::kGroups>& segments,
                        std::size_t offset) {
  OpenPlanes<Lines::kGroups, 6> open(segments, offset);
  Flags<Lines::kGroups> sixteens[4];
  for (auto& carry : sixteens) {
    for (Vector& group : carry.group) {
      group = hn::Zero(Bytes());
    }
  }
  for (std::size_t i = 0; 16 * i < count; ++i) {
    sixteens[i] = addSixteen(lines, open.planes, 16 * i);
  }
  const auto a = addToPlane(open.planes[4], sixteens[0], sixteens[1]);
  const auto b = addToPlane(open.planes[4], sixteens[2], sixteens[3]);
  const auto carry = addToPlane(open.planes[5], a, b);
  open.store();
  ripple(segments, offset, 6, carry);
}

template <class Lines>
HWY_INLINE void addBlock(const LineBlock& block, Lines& lines, const Segments<Lines::kGroups>& segments,
                         std::size_t offset) {
  const std::size_t lanes = hn::Lanes(Bytes());
  for (lines.from = 0; lines.from < kBlockSize; lines.from += lanes) {
    const std::size_t at = offset + lines.from;
    if constexpr (HWY_TARGET == HWY_STATIC_TARGET) {
      // The plain set is there for correctness: unrolled adders would only make it large.
      for (std::size_t line = 0; line < block.count; ++line) {
        ripple(segments, at, 0, lines.flags(line));
      }
    } else if (block.count > 16) {
      addMany(lines, block.count, segments, at);
    } else if (block.count > 4) {
      addFew<4>(lines, segments, at);
    } else if (block.count > 1) {
      addFew<2>(lines, segments, at);
    } else {
      addFew<0>(lines, segments, at);
    }
  }
}

// The flags of bases. kFull: no line ends within the block.
template <bool kFull>
struct BaseLines {
  static constexpr std::size_t kGroups = 1;

  HWY_INLINE explicit BaseLines(const LineBlock& lines)
      : block(&lines),
        letters(hn::LoadDup128(Bytes(), kLetterOfLowBits.data())),
        letterFlags(hn::LoadDup128(Bytes(), kFlagOfLowBits.data())) {}

  HWY_INLINE Flags<1> flags(std::size_t line) const {
    const Bytes d;
    const Vector upper =
        hn::And(hn::LoadU(d, bytesOf(block->text[line]) + from), hn::Set(d, std::uint8_t{0xDF}));
    const Vector lowBits = hn::And(upper, hn::Set(d, std::uint8_t{0x0F}));
    const auto isBase = hn::Eq(hn::TableLookupBytes(letters, lowBits), upper);
    const Vector result =
        hn::IfThenElse(isBase, hn::TableLookupBytes(letterFlags, lowBits), hn::Set(d, kOtherBaseFlag));
    if constexpr (kFull) {
      return {{result}};
    } else {
      return {{hn::And(result, firstBytes(d, block->sizes[line], from))}};
    }
  }

  const LineBlock* block;
  std::size_t from = 0;
  Vector letters;
  Vector letterFlags;
};

// The flags of the 16 quality codes that share their high four bits: the codes with the lower and those with
// the higher low bits.
template <bool kFull>
struct QualityLines {
  static constexpr std::size_t kGroups = 2;

  HWY_INLINE QualityLines(const LineBlock& lines, unsigned high)
      : block(&lines),
        base(hn::Set(Bytes(), static_cast<std::uint8_t>(16 * high))),
        lowFlags(hn::LoadDup128(Bytes(), kFlagsOfLowHalf.data())),
        highFlags(hn::LoadDup128(Bytes(), kFlagsOfHighHalf.data())) {}

  HWY_INLINE Flags<2> flags(std::size_t line) const {
    const Bytes d;
    Vector codes = hn::LoadU(d, bytesOf(block->text[line]) + from);
    if constexpr (!kFull) codes = hn::And(codes, firstBytes(d, block->sizes[line], from));
    // Differences of 16 and more, also those below zero, get the highest bit, which looks up a zero.
    const Vector marked = hn::SaturatedAdd(hn::Sub(codes, base), hn::Set(d, std::uint8_t{0x70}));
    const Vector index = hn::And(marked, hn::Set(d, std::uint8_t{0x8F}));
    return {{hn::TableLookupBytesOr0(lowFlags, index), hn::TableLookupBytesOr0(highFlags, index)}};
  }

  const LineBlock* block;
  std::size_t from = 0;
  Vector base;
  Vector lowFlags;
  Vector highFlags;
};

void addBases(const LineBlock& block, PlaneSegment& segment, std::size_t number) {
  const Segments<1> segments = {&segment};
  if (block.full) {
    BaseLines<true> lines(block);
    addBlock(block, lines, segments, number * kBlockSize);
  } else {
    BaseLines<false> lines(block);
    addBlock(block, lines, segments, number * kBlockSize);
  }
}

void addQualities(const LineBlock& block, unsigned high, const std::array<PlaneSegment*, 2>& segments,
                  std::size_t number) {
  if (block.full) {
    QualityLines<true> lines(block, high);
    addBlock(block, lines, segments, number * kBlockSize);
  } else {
    QualityLines<false> lines(block, high);
    addBlock(block, lines, segments, number * kBlockSize);
  }
}

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
