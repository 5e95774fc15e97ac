// What genostat qc knows of the columns of a result, and what it says about them.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace genostat::standalone {

struct ResultColumn {
  enum class Kind { Text, Number, Verdict };
  std::string_view name;
  Kind kind = Kind::Text;
};

// In the order of the file.
std::span<const ResultColumn> resultColumns();

// A column of verdicts that can come out badly.
struct QcCheck {
  std::string_view column;
  char letter;             // heads its marks
  std::string_view title;  // "base quality"; to be translated, as are the others
  std::string_view meaning;
  std::string_view remedy;
};

inline constexpr std::size_t kCheckCount = 10;
std::span<const QcCheck, kCheckCount> qcChecks();

}  // namespace genostat::standalone
