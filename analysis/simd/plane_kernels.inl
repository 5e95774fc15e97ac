// Counting by position, in bit planes, for one kind of vector unit; kernels.inl includes this inside its
// namespace, once for each unit, hence no include guard.

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
