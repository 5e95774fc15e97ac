// Any text as the metadata of a command: a record is made, with numbers where there are such, and the host's
// text is taken.
#include <cstdint>

#include "entry/record/geno_job_settings.h"
#include "host/control.h"
#include "tests/fuzz/require.h"

namespace {
std::string metadata;
}

std::string GetMetaDataJson() {
  return metadata;
}
void resetMetadataJson() {
  metadata.clear();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  const std::string text(reinterpret_cast<const char*>(data), size);
  metadata = text;
  const GenoJobSettings job;
  require(metadata.empty() && job.metadataJson() == text, "the record has the text, the host no longer");
  const bool named = text.find("_id") != std::string::npos || text.find('\\') != std::string::npos;
  require(named || (job.workbookId() == -1 && job.paragraphId() == -1), "no number comes from nowhere");
  return 0;
}
