// Paths, the parameter document, and the command line of the launcher.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/files.h"
#include "run/launch_command.h"
#include "run/parameter_json.h"
#include "run/paths.h"
#include "tests/support/temporary_folder.h"

namespace genostat {
namespace {

const std::string kSeparator(1, platform::kPathSeparator);

TEST(Paths, JoinAndSplitAtEitherSeparator) {
  EXPECT_EQ(joinPath("", "x.csv"), "x.csv");
  EXPECT_EQ(joinPath("C:/tmp/", "x.csv"), "C:/tmp/x.csv");
  EXPECT_EQ(joinPath("C:\\tmp\\", "/x"), "C:\\tmp\\/x");
  EXPECT_EQ(joinPath("tmp", "x.csv"), "tmp" + kSeparator + "x.csv");
  EXPECT_EQ(joinPath("tmp", ""), "tmp" + kSeparator);

  EXPECT_EQ(getFolderPath("dir/sub\\file"), "dir/sub\\");
  EXPECT_EQ(getFolderPath("\\"), "\\");
  EXPECT_EQ(getFolderPath("file"), "");
  EXPECT_EQ(getFolderPath(""), "");
}

TEST(UniqueFilename, CountsUpFromTheTimeStampAndGivesUpAtTheCap) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(generateUniqueFilename(folder.narrow("missing")), "");
  constexpr std::int64_t kTime = 1731721138;
  const auto path = [&](const std::string& ending) {
    return joinPath(folder.narrow(), "1731721138" + ending);
  };
  const auto next = [&] { return generateUniqueFilename(folder.narrow(), kTime); };
  EXPECT_EQ(next(), path(".csv"));
  std::ofstream(path(".csv")).flush();
  for (int n = 1; n < 1000; ++n) {
    if (n == 1 || n == 2 || n == 999) {
      EXPECT_EQ(next(), path("_" + std::to_string(n) + ".csv"));
    }
    std::ofstream(path("_" + std::to_string(n) + ".csv")).flush();
  }
  EXPECT_EQ(next(), path("_999.csv")) << "given up at the cap";
  const std::string now = generateUniqueFilename(folder.narrow());
  EXPECT_GT(std::stoll(now.substr(folder.narrow().size() + 1)), kTime);
}

TEST(Base64, EncodesEveryRemainder) {
  const std::pair<std::string, std::string> rows[] = {{"", ""},
                                                      {"f", "Zg=="},
                                                      {"fo", "Zm8="},
                                                      {"foo", "Zm9v"},
                                                      {"\xff\xfe", "//4="},
                                                      {std::string(3, '\0'), "AAAA"},
                                                      {"\xfb\xef\xbe", "++++"}};
  for (const auto& [data, text] : rows) {
    EXPECT_EQ(encodeBase64(data), text) << testing::PrintToString(data);
  }
}

TEST(ParameterJson, IsExact) {
  GenoJobSettings settings;
  settings.setFastqFolder("D:\\in");
  settings.setCsvFilePath("C:\\T\"\n\x01/\xc3\xa4\xff.csv");
  EXPECT_EQ(parameterJson(settings),
            "{\"fastq_data\":[{\"adapter\":\"NONE\",\"custom_sequence\":\"\",\"CSV_Path\":"
            "\"C:\\\\T\\\"\\n\\u0001/\xc3\xa4\xff.csv\",\"folder\":\"D:\\\\in\"}]}");
  settings.setFastqFiles({"a.fq", std::string("b\0c", 3)});
  settings.setCustomAdapterSequence("ACGT");
  settings.setCsvFilePath("");
  EXPECT_EQ(parameterJson(settings),
            "{\"fastq_data\":[{\"adapter\":\"CUSTOM\",\"custom_sequence\":\"ACGT\",\"CSV_Path\":\"\","
            "\"files\":[\"a.fq\",\"b\"]}]}");
  settings.setAdapterType(static_cast<AdapterType>(7));
  EXPECT_NE(parameterJson(settings).find("\"adapter\":\"NONE\""), std::string::npos);

  EXPECT_EQ(escapeQuotes("{\"a\":\"b\\c\"}"), "{\\\"a\\\":\\\"b\\c\\\"}");
}

TEST(LaunchCommand, QuotesThreeArgumentsAndWidensByteByByte) {
  const platform::LaunchCommand command = launchCommand("/h\x80\xff/l", "a b\".pyc", "Zg==");
  const std::string suffix = platform::kLauncherSuffix;
  EXPECT_EQ(command.launcher, "/h\x80\xff/l" + suffix);
  EXPECT_EQ(command.commandLine, u"\"/h\xff80\xffff/l" + std::u16string(suffix.begin(), suffix.end()) +
                                     u"\" \"a b\".pyc\" \"Zg==\"");
}

TEST(ScriptPath, PrefersTheScriptsFolder) {
  const test::TemporaryFolder folder;
  const std::string base = folder.narrow() + kSeparator;
  EXPECT_EQ(scriptPath(base), base + "genostat.pyc");
  std::filesystem::create_directory(folder.path() / "scripts");
  std::ofstream(folder.path() / "scripts" / "genostat.pyc") << "x";
  EXPECT_EQ(scriptPath(base), base + "scripts" + kSeparator + "genostat.pyc");
}

}  // namespace
}  // namespace genostat
