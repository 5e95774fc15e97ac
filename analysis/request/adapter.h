// Which adapter a job looks for in its reads.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace genostat::analysis {

enum class AdapterKind { None, Illumina, Nextera, Custom };

struct Adapter {
  AdapterKind kind = AdapterKind::None;
  std::string sequence;  // of a custom adapter only: letters A, C, G, T, N
};

// NONE, ILLUMINA, NEXTERA, CUSTOM: as requests and results spell the kind.
std::string_view adapterKindName(AdapterKind kind);

// The kind of exactly this spelling.
std::optional<AdapterKind> adapterKindFromName(std::string_view name);

// A custom adapter; letters may be given in any case. Throws a Failure (InvalidAdapter) for an
// empty sequence and for other letters than A, C, G, T, N.
Adapter customAdapter(std::string_view sequence);

}  // namespace genostat::analysis
