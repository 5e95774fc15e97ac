#include "analysis/request/adapter.h"

#include <array>
#include <utility>

#include "analysis/request/failure.h"
#include "common/text/ascii.h"
#include "common/text/printable_text.h"

namespace genostat::analysis {

namespace {

constexpr std::array<std::pair<AdapterKind, std::string_view>, 4> kKinds = {{
    {AdapterKind::None, "NONE"},
    {AdapterKind::Illumina, "ILLUMINA"},
    {AdapterKind::Nextera, "NEXTERA"},
    {AdapterKind::Custom, "CUSTOM"},
}};

}  // namespace

std::string_view adapterKindName(AdapterKind kind) {
  for (const auto& [value, name] : kKinds) {
    if (value == kind) return name;
  }
  return {};
}

std::optional<AdapterKind> adapterKindFromName(std::string_view name) {
  for (const auto& [value, spelling] : kKinds) {
    if (spelling == name) return value;
  }
  return std::nullopt;
}

Adapter customAdapter(std::string_view sequence) {
  Adapter adapter{AdapterKind::Custom, {}};
  for (const char letter : sequence) {
    const char upper = common::upperLetter(letter);
    if (std::string_view("ACGTN").find(upper) == std::string_view::npos) {
      throw Failure(ExitCode::InvalidAdapter, std::string(sequence),
                    "the adapter sequence " + common::quotedName(sequence) +
                        " has other letters than A, C, G, T and N");
    }
    adapter.sequence.push_back(upper);
  }
  if (adapter.sequence.empty()) {
    throw Failure(ExitCode::InvalidAdapter, {}, "a custom adapter needs a sequence of at least one letter");
  }
  return adapter;
}

}  // namespace genostat::analysis
