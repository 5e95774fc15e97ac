// What another host, its client and the analysis see of the module: each session in transcripts/ is played,
// and its text must come out as it is. With GENOSTAT_REWRITE_TRANSCRIPTS in the environment the files are
// written anew instead.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/recording_host/session.h"

namespace {

namespace fs = std::filesystem;

const fs::path kTranscripts = fs::path(GENOSTAT_SOURCE_DIR) / "tests" / "recording_host" / "transcripts";

std::vector<std::string> sessionNames() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(kTranscripts)) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, IsAsWritten) {
  const fs::path file = kTranscripts / (GetParam() + ".txt");
  std::ifstream stream(file, std::ios::binary);
  const std::string expected((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  ASSERT_FALSE(expected.empty());
  const std::string played = genostat::test::Session().play(expected);
  if (std::getenv("GENOSTAT_REWRITE_TRANSCRIPTS") != nullptr) {
    std::ofstream(file, std::ios::binary) << played;
  } else {
    EXPECT_EQ(played, expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Sessions, Transcript, testing::ValuesIn(sessionNames()),
                         [](const auto& name) { return name.param; });

}  // namespace
