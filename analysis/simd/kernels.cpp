#include "analysis/simd/kernels.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <vector>

#include "common/text/ascii.h"

// Between this one and the next there is little to gain.
#define HWY_DISABLED_TARGETS HWY_SSSE3
#define HWY_TARGET_INCLUDE "analysis/simd/kernels.inl"
// The plain set stands in where nothing else is usable. The compiler fault for which it is off by default
// concerns products, which no kernel forms; the tests compare all sets.
#define HWY_BROKEN_EMU128 0

namespace genostat::analysis {

namespace {

constexpr auto kOnesThenZeros = [] {
  std::array<std::uint8_t, 2 * kBlockSize> bytes{};
  std::fill_n(bytes.begin(), kBlockSize, std::uint8_t{0xFF});
  return bytes;
}();

constexpr std::string_view kBases = "ACGTN";
constexpr std::uint8_t kOtherBaseFlag = 1 << kBases.size();

// By a letter's low four bits: the base that has them, or a character that has not.
constexpr auto kLetterOfLowBits = [] {
  std::array<std::uint8_t, 16> letters{};
  letters[0] = 0xFF;
  for (const char base : kBases) {
    letters[static_cast<unsigned char>(base) & 15U] = static_cast<std::uint8_t>(base);
  }
  return letters;
}();

constexpr auto kFlagOfLowBits = [] {
  std::array<std::uint8_t, 16> flags{};
  for (std::size_t i = 0; i < kBases.size(); ++i) {
    flags[static_cast<unsigned char>(kBases[i]) & 15U] = static_cast<std::uint8_t>(1U << i);
  }
  return flags;
}();

constexpr auto kFlagsOfLowHalf = [] {
  std::array<std::uint8_t, 16> flags{};
  for (std::size_t i = 0; i < 8; ++i) {
    flags[i] = static_cast<std::uint8_t>(1U << i);
  }
  return flags;
}();

constexpr auto kFlagsOfHighHalf = [] {
  std::array<std::uint8_t, 16> flags{};
  for (std::size_t i = 0; i < 8; ++i) {
    flags[8 + i] = static_cast<std::uint8_t>(1U << i);
  }
  return flags;
}();

std::uint64_t countChangesOfAnyCase(std::string_view sequence) {
  std::uint64_t changes = 0;
  for (std::size_t i = 1; i < sequence.size(); ++i) {
    changes += common::upperLetter(sequence[i - 1]) != common::upperLetter(sequence[i]);
  }
  return changes;
}

}  // namespace

}  // namespace genostat::analysis

#include <hwy/foreach_target.h>
// The last one, for every processor.
#include "analysis/simd/kernels.inl"

namespace genostat::analysis {

namespace {

struct Choice {
  const Kernels& (*kernels)();  // null where the compiler cannot make them
  bool usable;
};

std::vector<const Kernels*> findUsable() {
  __builtin_cpu_init();
  const bool avx3 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                    __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
  const bool avx2 =
      __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi2");
  const bool sse4 = __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
  const Choice choices[] = {
      {HWY_CHOOSE_AVX3(kernels), avx3 && avx2},
      {HWY_CHOOSE_AVX2(kernels), avx2},
      {HWY_CHOOSE_SSE4(kernels), sse4},
      {&HWY_STATIC_DISPATCH(kernels), true},
  };
  std::vector<const Kernels*> usable;
  for (const Choice& choice : choices) {
    if (choice.usable && choice.kernels != nullptr) usable.push_back(&choice.kernels());
  }
  return usable;
}

}  // namespace

std::span<const Kernels* const> usableKernels() {
  static const std::vector<const Kernels*> kUsable = findUsable();
  return kUsable;
}

const Kernels& bestKernels() {
  return *usableKernels().front();
}

}  // namespace genostat::analysis
