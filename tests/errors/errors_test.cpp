// Messages of failed analyses and their details files.
#include "errors/error_details.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/files.h"
#include "tests/support/temporary_folder.h"

namespace genostat {
namespace {

TEST(ErrorDetails, AreReadOnceAndFillPlaceholders) {
  const test::TemporaryFolder folder;
  const std::string result = folder.narrow("7.csv");
  const std::string details = folder.narrow("7.error");
  EXPECT_EQ(errorDetailsPath(result), details);
  EXPECT_EQ(errorDetailsPath("C:\\run.2\\out"), "C:\\run.error");
  EXPECT_EQ(errorDetailsPath("out"), "out.error");

  std::ofstream(details) << R"({"FILE_PATH":"a.fq","N":3,"LOOP":"<{{LOOP}}{{FILE_PATH}}>"})";
  testing::internal::CaptureStdout();
  const ErrorDetails read = readErrorDetails(result);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\n  file :{\"FILE_PATH\":\"a.fq\",\"N\":3,\"LOOP\":\"<{{LOOP}}{{FILE_PATH}}>\"}");
  EXPECT_FALSE(platform::fileExists(details));

  EXPECT_EQ(replacePlaceholders("File not found:{{FILE_PATH}} {{FILE_PATH}} {{N}}", read),
            "File not found:a.fq a.fq {{N}}");
  // What a value brings in is searched for later members only.
  EXPECT_EQ(replacePlaceholders("{{LOOP}}{{LOOP}}", read), "<{{LOOP}}{{FILE_PATH}}><{{LOOP}}{{FILE_PATH}}>");

  testing::internal::CaptureStdout();
  const ErrorDetails missing = readErrorDetails(result);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n Error file not found");
  EXPECT_EQ(replacePlaceholders("{{FILE_PATH}}", missing), "{{FILE_PATH}}");
}

TEST(ErrorDetails, SurviveWhatIsNotTheirForm) {
  const test::TemporaryFolder folder;
  for (const std::string& content :
       {std::string("{\"FILE"), std::string("[\"x\"]"),
        std::string("{\"FILE_PATH\":0.0000000000e-2147483639}"), std::string(200'000, '[')}) {
    std::ofstream(folder.narrow("8.error")) << content;
    testing::internal::CaptureStdout();
    const ErrorDetails read = readErrorDetails(folder.narrow("8.csv"));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(replacePlaceholders("{{FILE_PATH}}", read), "{{FILE_PATH}}") << content.substr(0, 10);
  }
}

}  // namespace
}  // namespace genostat
