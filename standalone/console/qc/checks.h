// What genostat qc says about the checks.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "common/quality/checks.h"

namespace genostat::standalone {

struct QcCheck {
  common::Check check;
  std::string_view meaning;  // of a failure; to be translated, as is the other
  std::string_view remedy;

  const common::CheckNames& names() const { return common::namesOf(check); }
};

// Those that can come out badly: all but Basic Statistics, in the order of common::kChecks.
inline constexpr std::size_t kCheckCount = common::kChecks.size() - 1;
std::span<const QcCheck, kCheckCount> qcChecks();

}  // namespace genostat::standalone
