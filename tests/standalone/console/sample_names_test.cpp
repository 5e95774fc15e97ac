// Names of samples, cleaned alone and among others.
#include "standalone/console/qc/sample_names.h"

#include <gtest/gtest.h>

namespace genostat::standalone {
namespace {

using Names = std::vector<std::string>;

TEST(SampleNames, AreTakenApart) {
  const std::vector<std::pair<std::string, std::string>> cases = {{"x_S1_L001_R1_001", "x 1 1 1"},
                                                                  {"x_S12_R2_001", "x 12 0 2"},
                                                                  {"a_b_L008_R2_001", "a_b 0 8 2"},
                                                                  {"x_S1_L002", "x 1 2 0"},
                                                                  {"x_S1", "x_S1 0 0 0"},
                                                                  {"x.R2", "x 0 0 2"},
                                                                  {"x_r1", "x 0 0 1"},
                                                                  {"x_2", "x 0 0 2"},
                                                                  {"x_3", "x_3 0 0 0"},
                                                                  {"x_R3_001", "x_R3_001 0 0 0"},
                                                                  {"x_001", "x_001 0 0 0"},
                                                                  {"x_L01", "x_L01 0 0 0"},
                                                                  {"xR1", "xR1 0 0 0"},
                                                                  {"_R1_001", "_R1_001 0 0 0"},
                                                                  {"_L001_R1_001", "_L001 0 0 1"},
                                                                  {"R1", "R1 0 0 0"},
                                                                  {"", " 0 0 0"},
                                                                  {"_1", "_1 0 0 0"},
                                                                  {"x_S99999_L001", "x_S99999 0 1 0"}};
  for (const auto& [name, expected] : cases) {
    const SampleNameParts parts = cleanSampleName(name);
    EXPECT_EQ(parts.name + " " + std::to_string(parts.number) + " " + std::to_string(parts.lane) + " " +
                  std::to_string(parts.read),
              expected)
        << name;
  }
}

TEST(SampleNames, StayApart) {
  struct Case {
    Names names;
    Names expected;  // the name, "/" and the read, ">" and the partner
    std::vector<std::uint64_t> reads = {};
  };
  const std::vector<Case> cases = {
      {{"x_S1_L001_R1_001", "y_S2_L001_R1_001", "x_S1_L001_R2_001"}, {"x/1>2", "y/1", "x/2>0"}},
      {{"x_1", "x_2", "y_1"}, {"x/1>1", "x/2>0", "y_1"}},
      {{"x_1", "x_2"}, {"x/1>1", "x/2>0"}, {7, 7}},
      // Replicates, not reads.
      {{"x_1", "x_2"}, {"x_1", "x_2"}, {7, 8}},
      {{"x_1", "x_2", "x_3"}, {"x_1", "x_2", "x_3"}},
      {{"x_R1", "y.R1", "y.R2", "z_R2", "z.R1"}, {"x_R1", "y/1>2", "y/2>1", "z_R2", "z.R1"}},
      {{"x_S1_L001_R1_001", "x_S1_L001_R2_001", "x_S1_L002_R1_001", "x_S1_L002_R2_001"},
       {"x_L001/1>1", "x_L001/2>0", "x_L002/1>3", "x_L002/2>2"}},
      {{"x_S1_L001_R1_001", "x_S2_L001_R1_001", "x"}, {"x_S1_L001/1", "x_S2_L001/1", "x"}},
      {{"x_S1_L001_R1_001", "x_S1_L002_R1_001", "x_S2_L001_R1_001"},
       {"x_S1_L001/1", "x_S1_L002/1", "x_S2_L001/1"}},
      {{"x_1", "x_2", "x"}, {"x_1", "x_2", "x"}},
      {{"x_L001", "x_S1_L001_R1_001", "x_S1_L001"}, {"x_L001", "x_S1_L001_R1_001", "x_S1_L001"}},
      // Of two folders.
      {{"x_R1", "x_R2", "x_R1"}, {"x_R1", "x_R2", "x_R1"}},
      {{"x_S1_R1_001", "x_S1_R1_001", "x_S1_R2_001"}, {"x/1", "x/1", "x/2"}},
      {{}, {}},
  };
  for (const Case& one : cases) {
    Names shown;
    for (const CleanSample& sample : cleanSampleNames(one.names, one.reads)) {
      shown.push_back(sample.name);
      if (sample.read > 0) shown.back() += "/" + std::to_string(sample.read);
      if (sample.partner) shown.back() += ">" + std::to_string(*sample.partner);
    }
    EXPECT_EQ(shown, one.expected) << testing::PrintToString(one.names);
  }
}

}  // namespace
}  // namespace genostat::standalone
