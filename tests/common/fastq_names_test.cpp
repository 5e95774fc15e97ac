// What counts as a file of reads.
#include "common/files/fastq_names.h"

#include <gtest/gtest.h>

namespace genostat::common {
namespace {

TEST(SampleName, IsTheFilesWithoutItsEnding) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a.fastq", "a"},           {"a.fq.gz", "a"},     {"A.FASTQ.Gz", "A"},
      {"a.fastq.fq", "a.fastq"},  {"a.gz.fq", "a.gz"},  {"a.txt.gz", "a.txt"},
      {"notes.txt", "notes.txt"}, {".fastq", ".fastq"}, {"fq", "fq"}};
  for (const auto& [file, name] : cases) {
    EXPECT_EQ(sampleName(file), name);
  }
}

}  // namespace
}  // namespace genostat::common
