// Any text in chunks of any size: the same records and the same error as from the reference.
// The input is three sizes of chunks, used in turn, and the text; three zeros stand for one chunk.
#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "tests/analysis/cut_text.h"
#include "tests/analysis/reference_parser.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  std::array<std::size_t, 3> sizes = {};
  if (size < sizes.size()) return 0;
  std::copy_n(data, sizes.size(), sizes.begin());
  if (sizes == std::array<std::size_t, 3>{}) sizes[0] = size;
  const std::string_view text(reinterpret_cast<const char*>(data) + sizes.size(), size - sizes.size());

  const genostat::test::ReferenceResult expected = genostat::test::parseSlowly(text);
  const genostat::test::CutResult result = genostat::test::cutInChunks(text, sizes);
  require(result.error == expected.error,
          "the error is '" + expected.error + "', not '" + result.error + "'");
  require(result.records == expected.records, "the records are the reference's");
  require(result.countsAgree, "the batches count the records before them");
  return 0;
}
