// Any file as the error details of an analysis: the host says why the job failed, the module reads them, the
// file goes, and each of them fills its place.
#include <cstdint>
#include <iostream>

#include "errors/error_details.h"
#include "standalone/session/finished_job.h"
#include "tests/fuzz/input_file.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using genostat::test::require;
  std::cout.setstate(std::ios::badbit);  // the details are echoed
  const auto file = genostat::test::writeInput("1.error", genostat::test::textOf(data, size));
  genostat::standalone::ClientMessage ended;
  ended.syntax = "GENOSTAT /PRINT SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=205.";
  ended.csvFilePath = file.parent_path() / "1.csv";
  require(!genostat::standalone::failureOf(ended).empty(), "there is a reason");
  const genostat::ErrorDetails details = genostat::readErrorDetails(ended.csvFilePath);
  require(!std::filesystem::exists(file), "the file is gone");
  for (const auto& detail : details) {
    const std::string place = "{{" + detail.first + "}}";
    const std::string filled = genostat::replacePlaceholders("a" + place + "b", {detail});
    require(filled == "a" + detail.second + "b", "a place is filled once: " + filled);
  }
  return 0;
}
