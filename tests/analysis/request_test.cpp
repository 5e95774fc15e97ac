// What a job is asked to do, and what it finds to do.
#include "analysis/request/request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "analysis/request/base64.h"
#include "analysis/request/failure.h"
#include "analysis/request/samples.h"
#include "tests/analysis/base64_text.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::analysis {
namespace {

// "CODE sentence" of the failure, or "" without one.
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
    return {};
  } catch (const Failure& failure) {
    return std::to_string(static_cast<int>(failure.code())) + " " + failure.what();
  }
}

TEST(Base64, IsDecodedStrictly) {
  for (const char* bytes : {"", "f", "fo", "foo", "\xFF\xFE", "{\"a\":\"\xC3\xB8\"}"}) {
    EXPECT_EQ(decodeBase64(test::toBase64(bytes)), bytes);
  }
  for (const char* text :
       {"Zg", "Zg=", "Zg===", "Z===", "====", "Zg==Zg==", "Zh==", "Zm9=", "Zm9v\n", "Zm9-", "Z g="}) {
    EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
  }
}

TEST(Request, HoldsWhatTheDocumentSays) {
  const Request request = parseRequest(test::toBase64(
      R"({"fastq_data":[{"adapter":"CUSTOM","custom_sequence":"acgtN","CSV_Path":"C:\\t\\1.csv","files":["a b.fq","\u00f8"]}]})"));
  EXPECT_EQ(request.adapter.kind, AdapterKind::Custom);
  EXPECT_EQ(request.adapter.sequence, "ACGTN");
  EXPECT_EQ(request.csvPath, "C:\\t\\1.csv");
  EXPECT_EQ(request.files, (std::vector<std::string>{"a b.fq", "\xC3\xB8"}));
  EXPECT_FALSE(request.folder);
}

TEST(Request, IsValidated) {
  struct Case {
    std::string json;
    std::string failure;
    bool namesCsv;
  };
  const auto with = [](const std::string& members) { return "{\"fastq_data\":[{" + members + "}]}"; };
  const std::string adapter = R"("adapter":"NONE","custom_sequence":"",)";
  const std::string csv = R"("CSV_Path":"o.csv",)";
  const std::vector<Case> cases = {
      {with(adapter + csv + R"("folder":"","later":1)"), "", true},
      {"", "3 the payload is not JSON: The document is empty. (at byte 0)", false},
      {"{\"a\":1", "3 the payload is not JSON: Missing a comma or '}' after an object member. (at byte 6)",
       false},
      {std::string(300'000, '['), "3 the payload is not JSON: Invalid value. (at byte 300000)", false},
      {"[]", "4 the request has no \"fastq_data\" array of one object", false},
      {"{\"fastq_data\":[{},{}]}", "4 the request has no \"fastq_data\" array of one object", false},
      {with(adapter + R"("folder":"")"), "4 the request has no member \"CSV_Path\"", false},
      {with(adapter + R"("CSV_Path":7,"folder":"")"), "4 the request's member \"CSV_Path\" is not a string",
       false},
      {with(adapter + R"("CSV_Path":"","folder":"")"), "4 the request's member \"CSV_Path\" is empty", false},
      {with(adapter + csv + R"("x":0)"), "4 the request has neither \"files\" nor \"folder\"", true},
      {with(adapter + csv + R"("files":[],"folder":"")"), "4 the request has both \"files\" and \"folder\"",
       true},
      {with(adapter + csv + R"("files":"a")"), "4 the request's member \"files\" is not an array", true},
      {with(adapter + csv + R"("files":["a",null])"), "4 the request's member \"files\" is not a string",
       true},
      {with(adapter + csv + R"("folder":"a\u0000b")"),
       "4 the request's member \"folder\" holds a zero character", true},
      {with(R"("adapter":"none","custom_sequence":"",)" + csv + R"("folder":"")"),
       "4 the request's adapter \"none\" is none of NONE, ILLUMINA, NEXTERA, CUSTOM", true},
      {with(R"("adapter":"NONE",)" + csv + R"("folder":"")"),
       "4 the request has no member \"custom_sequence\"", true},
      {with(R"("adapter":"CUSTOM","custom_sequence":"",)" + csv + R"("folder":"")"),
       "10 a custom adapter needs a sequence of at least one letter", true},
      {with(R"("adapter":"CUSTOM","custom_sequence":"ACGU",)" + csv + R"("folder":"")"),
       "10 the adapter sequence \"ACGU\" has other letters than A, C, G, T and N", true},
  };
  for (const Case& one : cases) {
    const std::string payload = test::toBase64(one.json);
    EXPECT_EQ(failureOf([&] { parseRequest(payload); }), one.failure) << one.json.substr(0, 200);
    EXPECT_EQ(csvPathOfRequest(payload).has_value(), one.namesCsv) << one.json.substr(0, 200);
  }
}

TEST(Samples, OfAFolderAreItsFastqFilesInByteOrder) {
  const test::TemporaryFolder folder;
  // "a-" before "a." and capital letters before small ones.
  for (const char* name :
       {"b.fq", "a.fastq.gz", "a-1.FQ.GZ", "B.FastQ", "x.txt", "y.fastq.bz2", "zfastq", "._b.fq"}) {
    test::writeWholeFile(folder.path() / name, "");
  }
  std::filesystem::create_directory(folder.path() / "folder.fastq");
  test::writeWholeFile(folder.path() / "folder.fastq" / "inner.fastq", "");
  std::vector<std::string> names;
  for (const Sample& sample : samplesOfFolder(platform::pathToUtf8(folder.path()))) {
    names.push_back(sample.fileName);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"B.FastQ", "a-1.FQ.GZ", "a.fastq.gz", "b.fq"}));
}

TEST(Samples, OfEqualNamesAreToldApartByTheirFolders) {
  const test::TemporaryFolder folder;
  for (const char* name :
       {"lane1/a/x.fq", "lane2/a/x.fq", "lane2/b/x.fq", "lane2/b/y.fq", ".old/x.fq", "z.fq"}) {
    std::filesystem::create_directories((folder.path() / name).parent_path());
    test::writeWholeFile(folder.path() / name, "");
  }
  const std::string root = platform::pathToUtf8(folder.path());
  const auto namesOf = [](std::vector<Sample> samples) {
    tellApart(samples);
    std::vector<std::string> names;
    std::ranges::transform(samples, std::back_inserter(names), &Sample::name);
    return names;
  };
  using Names = std::vector<std::string>;
  EXPECT_EQ(namesOf(samplesOfFolder(root)), (Names{"z"}));
  EXPECT_EQ(namesOf(samplesOfFolder(root, {.recursive = true})),
            (Names{"lane1/a/x", "lane2/a/x", "b/x", "y", "z"}));
  // A file that is given twice has no name that tells it apart from itself.
  EXPECT_EQ(
      namesOf(samplesOfFiles({root + "/lane1/a/x.fq", root + "/lane1/a/../a/x.fq", root + "/lane2/b/x.fq"})),
      (Names{"a/x", "a/x", "b/x"}));
  EXPECT_THAT(failureOf([&] { samplesOfFolder(root + "/lane1", {.forPeople = true}); }),
              testing::EndsWith("in this folder; --recursive takes those of the folders in it"));
}

TEST(Samples, ThatAreNotThereAreNamed) {
  const test::TemporaryFolder folder;
  const std::string empty = platform::pathToUtf8(folder.path());
  test::writeWholeFile(folder.path() / "plain", "");
  EXPECT_EQ(
      failureOf([&] { samplesOfFolder(empty); }),
      "8 cannot read \"" + empty + "\": no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder");
  EXPECT_EQ(failureOf([&] { samplesOfFolder(empty + "/none"); }),
            "2 cannot read \"" + empty + "/none\": no such folder");
  EXPECT_EQ(failureOf([&] { samplesOfFolder(empty + "/plain"); }),
            "2 cannot read \"" + empty + "/plain\": it is no folder");
  EXPECT_EQ(failureOf([&] { samplesOfFolder(""); }), "8 no FASTQ files and no folder were given");
  EXPECT_EQ(failureOf([&] { samplesOfFiles({}); }), "8 the list of FASTQ files is empty");
  EXPECT_EQ(failureOf([&] { sampleOfFile(empty); }), "5 cannot read \"" + empty + "\": it is a folder");
  EXPECT_EQ(failureOf([&] { sampleOfFile("/no/such.fq"); }), "2 cannot read \"/no/such.fq\": no such file");
}

}  // namespace
}  // namespace genostat::analysis
