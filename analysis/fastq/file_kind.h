// What a file is that is no FASTQ.
#pragma once

#include <string>
#include <string_view>

namespace genostat::analysis {

// A sentence that says so and how to get reads out of it, by the first bytes of the (inflated) text; empty
// for one that is not known. FASTQ in an unusual form counts, such as with sequences over several lines.
std::string foreignKind(std::string_view beginning);

}  // namespace genostat::analysis
