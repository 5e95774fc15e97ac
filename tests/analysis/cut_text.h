// A text cut into records the way the analyser does it: in chunks, several batches on their way at once.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tests/analysis/reference_parser.h"

namespace genostat::test {

struct CutResult : ReferenceResult {
  bool countsAgree = true;  // what the batches say about the records before them is right
};

// `sizes` of the chunks, used over and over; a size of 0 makes an empty chunk, so one must be larger. With a
// defect the text breaks off at its end.
CutResult cutInChunks(std::string_view text, std::span<const std::size_t> sizes,
                      const std::string& defect = {});

}  // namespace genostat::test
