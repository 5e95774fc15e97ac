#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "standalone/data/number_text.h"
#include "standalone/data/text_import.h"
#include "tests/support/temporary_folder.h"

namespace genostat::standalone {
namespace {

std::string plain(double value) {
  if (std::isnan(value)) return "_";
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << value;
  return text.str();
}

// "a:num[1 _ 2.5] b:str[x|]", then one line per warning.
std::string dump(const ImportResult& result) {
  std::string text;
  for (const Column& column : result.dataset.columns) {
    const bool numeric = column.type == Column::Type::Numeric;
    text += (text.empty() ? "" : " ") + column.name + (numeric ? ":num[" : ":str[");
    const std::size_t cases = numeric ? column.numbers.size() : column.texts.size();
    for (std::size_t i = 0; i < cases; ++i) {
      if (i > 0) text += numeric ? ' ' : '|';
      text += numeric ? plain(column.numbers[i]) : column.texts[i];
    }
    text += ']';
    EXPECT_EQ(cases, result.dataset.caseCount);
  }
  for (const std::string& warning : result.warnings) {
    text += '\n' + warning;
  }
  return text;
}

class Import : public testing::Test {
 protected:
  ImportRequest request(const std::string& content) {
    ImportRequest request;
    request.file = folder_.path() / "data.csv";
    std::ofstream(request.file, std::ios::binary) << content;
    request.firstCase = 2;
    request.columns = {{"a", {}, {}, 0}, {"b", {}, {}, 0}};
    return request;
  }

  test::TemporaryFolder folder_;
};

TEST_F(Import, ReadsEveryShapeOfText) {
  struct Row {
    std::string what, content, expected;
  };
  const std::vector<Row> rows = {
      {"LF", "a,b\n1,x\n2.5,y\n", "a:num[1 2.5] b:str[x|y]"},
      {"CR LF, BOM, no last line end",
       "\xEF\xBB\xBF"
       "a,b\r\n1,x\r\n2,y",
       "a:num[1 2] b:str[x|y]"},
      {"quotes", "a,b\n1,\"x, \"\"y\"\"\r\nz\"\n2,\"\"\n", "a:num[1 2] b:str[x, \"y\"\r\nz|]"},
      {"quotes inside and behind", "a,b\n1,x\"y\"\n2,\"x\"y\r\n", "a:num[1 2] b:str[x\"y\"|xy]"},
      {"quoted numbers and blanks", "a,b\n\"1\", x \n\" 2 \",\" \"\n", "a:num[1 2] b:str[ x |]"},
      {"quoted header over two lines", "\"a\nb\",c\n1,2\n", "a:num[1] b:num[2]"},
      {"blank lines", "a,b\n\n1,2\n\r\n3,4\n\n", "a:num[1 3] b:num[2 4]"},
      {"quoted empty line", "a,b\n\"\"\n",
       "a:num[_] b:num[_]\nline 2 has 1 value for 2 variables; the others are missing"},
      {"no value at all is numeric", "a,b\n1,\n2, \n", "a:num[1 2] b:num[_ _]"},
      {"empty last field at the end", "a,b\n1,x\n2,", "a:num[1 2] b:str[x|]"},
      {"ragged", "a,b\n1\n2,3,4\n5\n\"6\n\",7,8,9\n",
       "a:str[1|2|5|6\n] b:num[_ 3 _ 7]\nline 2 has 1 value for 2 variables; the others are missing (2 such "
       "lines)\n"
       "line 3 has 3 values for 2 variables; the values beyond are left out (2 such lines)"},
      {"header only", "a,b\n", "a:num[] b:num[]\nit holds no cases"},
      {"words for numbers", "a,b\nnan,inf\n0x10,1e5\n", "a:str[nan|0x10] b:str[inf|1e5]"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(dump(importText(request(row.content))), row.expected) << row.what;
  }
}

TEST_F(Import, DecidesTypesByShareOfNumbers) {
  std::string content = "a,b\n";
  for (int i = 1; i <= 20; ++i) {
    content += (i == 7 ? "n/a," : "1,") + std::string(i < 3 ? "x" : i < 5 ? "" : "007") + "\n";
  }
  ImportRequest wanted = request(content);
  const ImportResult at95 = importText(wanted);
  EXPECT_EQ(at95.dataset.columns[0].type, Column::Type::Numeric);
  EXPECT_EQ(at95.warnings,
            std::vector<std::string>{"1 value of a is not a number and became missing: \"n/a\" in line 8"});
  // 16 of 18 are numbers: a string variable, with its texts as they stand in the file.
  EXPECT_EQ(at95.dataset.columns[1].texts[4], "007");
  wanted.percentage = 95.1;
  EXPECT_EQ(importText(wanted).dataset.columns[0].texts[6], "n/a");
  wanted.percentage = 16.0 / 18.0 * 100.0;
  EXPECT_EQ(importText(wanted).dataset.columns[1].type, Column::Type::Numeric);
  wanted.percentage = 0;
  wanted.columns = {{"a", ImportColumn::Kind::Numeric, 2, 0}, {"b", ImportColumn::Kind::String, {}, 2}};
  const ImportResult typed = importText(wanted);
  EXPECT_EQ(typed.dataset.columns[0].decimals, 2);
  EXPECT_EQ(typed.dataset.columns[1].texts[4], "00");
  EXPECT_EQ(typed.warnings[1],
            "16 values of b are longer than 2 bytes and were cut; the first is \"007\" in line 6");
}

TEST_F(Import, ReadsRecordsAcrossChunks) {
  const std::string longText(3'000'000, 'q');
  std::string content = "a,b\n";
  double sum = 0;
  for (int i = 0; i < 300'000; ++i) {
    content += std::to_string(i) + ",\"v\"\"" + std::to_string(i) + "\"\n";
    sum += i;
  }
  content += "1,\"" + longText + "\n" + longText + "\"\n2,\n";
  const Dataset dataset = importText(request(content)).dataset;
  ASSERT_EQ(dataset.caseCount, 300'002U);
  double read = 0;
  for (std::size_t i = 0; i < 300'000; ++i) {
    read += dataset.columns[0].numbers[i];
    ASSERT_EQ(dataset.columns[1].texts[i], "v\"" + std::to_string(i));
  }
  EXPECT_EQ(read, sum);
  EXPECT_EQ(dataset.columns[1].texts[300'000], longText + "\n" + longText);
}

TEST_F(Import, SaysWhyAFileCannotBeRead) {
  struct Row {
    std::string content, expected;
  };
  const std::vector<Row> rows = {
      {"", "it is empty"},
      {"\xEF\xBB\xBF", "it is empty"},
      {std::string("\xFF\xFE"
                   "a\0",
                   4),
       "line 1: the text is UTF-16, not UTF-8"},
      {"a,b\n1,\"x\ny\n2,z\n", "line 2: a quoted value is not closed"},
  };
  const auto reason = [](const ImportRequest& wanted) {
    try {
      importText(wanted);
    } catch (const ImportError& error) {
      return std::string(error.what());
    }
    return std::string("no error");
  };
  for (const Row& row : rows) {
    EXPECT_EQ(reason(request(row.content)), row.expected);
  }
  ImportRequest wanted = request("a");
  wanted.file = folder_.path();
  EXPECT_EQ(reason(wanted), "it is a folder");
  wanted.file = folder_.path() / "none.csv";
  EXPECT_EQ(reason(wanted), "it cannot be opened: No such file or directory");
}

TEST(NumberText, IsCNotationWithEitherSign) {
  struct Row {
    std::string text;
    char decimal;
    std::string expected;
    int decimals;
  };
  const std::vector<Row> rows = {
      {"1", '.', "1", 0},           {"-.5", '.', "-0.5", 1},
      {"5.", '.', "5", 0},          {"+1.25e-2", '.', "0.0125", 2},
      {"1e400", '.', "none", 0},    {"1e-400", '.', "0", 0},
      {"1,5", ',', "1.5", 1},       {"1.5", ',', "none", 0},
      {"1,5", '.', "none", 0},      {"", '.', "none", 0},
      {".", '.', "none", 0},        {"-", '.', "none", 0},
      {"+-1", '.', "none", 0},      {"1 2", '.', "none", 0},
      {"infinity", '.', "none", 0}, {"-nan", '.', "none", 0},
      {"0x1p3", '.', "none", 0},    {"1e", '.', "none", 0},
      {"1,2,3", ',', "none", 0},
  };
  for (const Row& row : rows) {
    const auto number = parseNumber(row.text, row.decimal);
    EXPECT_EQ(number ? plain(number->value) : "none", row.expected) << row.text;
    EXPECT_EQ(number ? number->decimals : 0, row.decimals) << row.text;
  }
}

}  // namespace
}  // namespace genostat::standalone
