// Hostile names: whatever bytes a file name or another argument has, none of them reaches a terminal as it
// is.
#include <gtest/gtest.h>

#include "common/text/printable_text.h"
#include "tests/analysis/base64_text.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

// Every byte but / in pieces that no message cuts, and what valid UTF-8 has of the same kind.
std::vector<std::string> hostileNames() {
  std::vector<std::string> names;
  for (int first = 1; first < 256; first += 32) {
    std::string& name = names.emplace_back();
    for (int byte = first; byte < std::min(first + 32, 256); ++byte) {
      if (byte != '/') name += static_cast<char>(byte);
    }
  }
  std::string& controls = names.emplace_back();
  for (char byte = '\x80'; byte <= '\x9F'; ++byte) {
    controls.append("\xC2").append(1, byte);
  }
  names.emplace_back("\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6\xE2\x80\x8E");
  return names;
}

std::string payloadFor(const std::string& file) {
  std::string json =
      R"({"fastq_data":[{"adapter":"NONE","custom_sequence":"","CSV_Path":"none/r.csv","files":[")";
  for (const char c : file) {
    constexpr const char* kDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && c != '"' && c != '\\') {
      json += c;
    } else {
      json.append("\\u00").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 15U]);
    }
  }
  return toBase64(json + "\"]}]}");
}

class HostileNames : public testing::Test {
 protected:
  void SetUp() override {
    if (fs::path::preferred_separator == '\\') GTEST_SKIP() << "command lines are no bytes here";
    fs::create_directory(folder_.path() / "temp");
    write("good.fq", "@a\nG\n+\n5\n");
    write("good.syntax", "FOO.\n");
  }

  void write(const std::string& name, const std::string& text) const {
    writeWholeFile(folder_.path() / name, text);
  }
  ProgramResult run(const char* program, const Arguments& arguments, const std::string& input = {}) const {
    return runProgram({fs::absolute(GENOSTAT_BIN_DIR) / program,
                       arguments,
                       folder_.path(),
                       input,
                       {{"LC_ALL", "C.UTF-8"}, {"TMPDIR", (folder_.path() / "temp").string()}}});
  }

  TemporaryFolder folder_;
};

// Where the programs are given a name.
std::vector<Arguments> analyserLines(const std::string& name) {
  return {{name},
          {"-" + name},
          {"script", name},
          {"--generate", name},
          {"qc", name},
          {"qc", "bad" + name},
          {"qc", "good.fq", "./" + name + "/"},
          {"qc", "good.fq", "--" + name},
          {"qc", "good.fq", "--safe-csv=" + name},
          {"qc", "good.fq", "--adapter", name},
          {"qc", "good.fq", "--threads", name},
          {"qc", "good.fq", "--csv", "none/" + name},
          {"qc", "good.fq", "--csv", name + ".fq"},
          {"qc", "good.fq", "--json", name, "--csv", "./" + name},
          {"qc", "good.fq", "--fastqc-data", "good.fq/" + name},
          {"script", payloadFor(name)},
          {"script", payloadFor("bad" + name)}};
}

std::vector<Arguments> hostLines(const std::string& name) {
  std::vector<Arguments> lines = {{name},
                                  {"-" + name},
                                  {"run", name},
                                  {"run", "syntax" + name},
                                  {"run", "good.syntax", "--" + name},
                                  {"run", "good.syntax", "--csv", "good.fq/" + name},
                                  {"shell", name},
                                  {"qc", name},
                                  {"qc", "good.fq", "./" + name + "/"},
                                  {"qc", "bad" + name},
                                  {"qc", "good.fq", "--print-syntax=" + name}};
  for (const char* option : {"--adapter", "--name", "--descriptives", "--regression", "--language",
                             "--output", "--strings", "--temp", "--home"}) {
    lines.push_back({"qc", "good.fq", option, name});
  }
  for (const char* option : {"--csv", "--to", "--html", "--events", "--fastqc-data"}) {
    lines.push_back({"qc", "good.fq", option, "good.fq/" + name});
  }
  return lines;
}

TEST_F(HostileNames, ReachNoStreamAsTheyAre) {
  const auto expectHarmless = [](const ProgramResult& result, const Arguments& arguments) {
    for (const std::string& stream : {result.out, result.err}) {
      // A tab in a line that is quoted is as harmless as its end.
      EXPECT_EQ(stream, common::printableText(stream, common::LineBreaks::Keep))
          << testing::PrintToString(arguments);
    }
    EXPECT_NE(result.err, "") << testing::PrintToString(arguments);
  };
  for (const std::string& name : hostileNames()) {
    write("bad" + name, "@a\nG\n+\n55\n");
    write("syntax" + name, "FOO '" + name + "'.\n");
    for (const Arguments& arguments : analyserLines(name)) {
      expectHarmless(run("genostat-analysis", arguments), arguments);
    }
    for (const Arguments& arguments : hostLines(name)) {
      expectHarmless(run("genostat", arguments), arguments);
    }
    const std::string lines = "run " + name + "\ncancel " + name + "\n" + name + "\n";
    expectHarmless(run("genostat", {"shell", "--no-history"}, lines), {lines});
  }
}

TEST_F(HostileNames, AreCutInMessages) {
  const std::string name(20'000, 'x');
  constexpr std::size_t kMost = 2000;
  for (const Arguments& arguments : analyserLines(name)) {
    EXPECT_LT(run("genostat-analysis", arguments).err.size(), kMost) << arguments.back().substr(0, 99);
  }
  for (const Arguments& arguments : hostLines(name)) {
    EXPECT_LT(run("genostat", arguments).err.size(), kMost)
        << testing::PrintToString(arguments).substr(0, 99);
  }
}

TEST_F(HostileNames, ThatNobodyHasAreMissingInTheSameWords) {
  for (const std::string name : {"nothere.fq", "goood.fq", "no\x1Bthere/"}) {
    const std::string err = run("genostat-analysis", {"qc", name}).err;
    EXPECT_TRUE(
        err.starts_with("error: cannot read \"" + common::shownName(name) + "\": no such file or folder"))
        << err;
    EXPECT_EQ(run("genostat", {"qc", name}).err, err);
  }
}

}  // namespace
}  // namespace genostat::test
