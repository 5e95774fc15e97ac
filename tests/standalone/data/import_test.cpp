#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "standalone/data/number_text.h"
#include "standalone/data/text_import.h"
#include "tests/support/run_program.h"
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

// A decimal comma and grouped digits everywhere, as on many a user's machine.
class CommaLocale {
 public:
  CommaLocale() : former_(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {}
  ~CommaLocale() { std::locale::global(former_); }

 private:
  struct Punctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::locale former_;
};

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

  CommaLocale locale_;
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
      {"blanks alone are no value", "a,b\nx, \n ,1\ny,y\n", "a:str[x||y] b:str[|1|y]"},
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
      {"first texts, then numbers, then texts", "a,b\nx,\n1,\ny,2\n", "a:str[x|1|y] b:num[_ _ 2]"},
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
  // What no double can hold becomes missing as well, never an infinity.
  std::string large = "a,b\n";
  for (int i = 0; i < 19; ++i) {
    large += "1,2\n";
  }
  const ImportResult beyond = importText(request(large + "1e999,-1e999\n"));
  EXPECT_TRUE(std::isnan(beyond.dataset.columns[0].numbers[19]));
  EXPECT_EQ(beyond.warnings[1], "1 value of b is not a number and became missing: \"-1e999\" in line 21");
  wanted = request(content);
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
  if (std::filesystem::path::preferred_separator == '\\') return;
  test::runProgram({"/usr/bin/mkfifo", {"pipe"}, folder_.path(), {}, {}});
  for (const auto& other : {folder_.path() / "pipe", std::filesystem::path("/dev/zero")}) {
    wanted.file = other;
    EXPECT_EQ(reason(wanted), "it is no regular file") << other;
  }
}

TEST(NumberText, IsCNotationWithEitherSign) {
  struct Row {
    std::string text;
    char decimal;
    std::string expected;
    int decimals;
  };
  const std::string zeros(400, '0');
  const std::vector<Row> rows = {
      {"1", '.', "1", 0},
      {"-.5", '.', "-0.5", 1},
      {"5.", '.', "5", 0},
      {"+5", '.', "5", 0},
      {"-0", '.', "-0", 0},
      {".12345678", '.', "0.123457", 8},
      {"1234567.", '.', "1.23457e+06", 0},
      {"1e5", '.', "100000", 0},
      {"1E-05", '.', "1e-05", 5},
      {"+1.25e-2", '.', "0.0125", 4},
      {"1.25e1", '.', "12.5", 1},
      {"1e400", '.', "none", -1},
      {"-1e999", '.', "none", -1},
      {"1e-400", '.', "0", 16},
      {"1e-99999999999999999999", '.', "0", 16},
      {"1e99999999999999999999", '.', "none", -1},
      {"0e99999999999999999999", '.', "0", 0},
      {"1e00000000000000000000002", '.', "100", 0},
      {"0." + zeros + "1", '.', "0", 16},
      {"-0," + zeros + "1", ',', "-0", 16},
      {"1" + zeros + "e-1", '.', "none", -1},
      {"1" + zeros + "e-400", '.', "1", 16},
      {"1,5", ',', "1.5", 1},
      {"1,5e-400", ',', "0", 16},
      {"1.5", ',', "none", -1},
      {"1,5", '.', "none", -1},
      {"", '.', "none", -1},
      {".", '.', "none", -1},
      {"-", '.', "none", -1},
      {"-.", '.', "none", -1},
      {"+-1", '.', "none", -1},
      {"--1", '.', "none", -1},
      {"1 2", '.', "none", -1},
      {"infinity", '.', "none", -1},
      {"-nan", '.', "none", -1},
      {"0x1p3", '.', "none", -1},
      {"1e", '.', "none", -1},
      {"1.2.3", '.', "none", -1},
      {"1.234567890.2", '.', "none", -1},
      {"12345678a", '.', "none", -1},
      {"1234567\xB0", '.', "none", -1},
      {"1,2,3", ',', "none", -1},
  };
  for (const Row& row : rows) {
    const ParsedNumber number = parseNumber(row.text, row.decimal);
    EXPECT_EQ(number ? plain(number.value) : "none", row.expected) << row.text;
    EXPECT_EQ(number.decimals, row.decimals) << row.text;
  }
}

// Bit by bit what the library reads, whatever the number of digits and wherever the point stands.
TEST(NumberText, IsRoundedAsTheLibraryRounds) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 200'000; ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    const std::size_t digits = 1 + random() % 19;
    const std::size_t point = random() % (digits + 2);  // the last one: none
    for (std::size_t k = 0; k < digits; ++k) {
      if (k == point) text += '.';
      text += static_cast<char>('0' + random() % 10);
    }
    if (point == digits) text += '.';
    if (random() % 8 == 0) text += "e" + std::to_string(static_cast<int>(random() % 60) - 30);
    double expected = 0;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    const ParsedNumber number = parseNumber(text, '.');
    ASSERT_EQ(std::bit_cast<std::uint64_t>(number.value), std::bit_cast<std::uint64_t>(expected)) << text;
  }
}

// The same fields as a walk from byte to byte finds, wherever chunks and blocks end.
TEST(RecordReader, FindsFieldsWhereverBlocksEnd) {
  std::mt19937 random(1);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    std::string expected;
    std::size_t line = 1;
    for (std::size_t record = random() % 12; record > 0; --record) {
      expected += std::to_string(line) + ":";
      for (std::size_t field = 0, fields = 2 + random() % 9; field < fields; ++field) {
        const std::string bytes(random() % 5 == 0 ? random() % 200 : random() % 9,
                                random() % 2 == 0 ? 'x' : '\x8A');
        if (field > 0) text += random() % 2 == 0 ? ',' : ';';
        if (random() % 4 == 0) {
          text += '"' + bytes + ",\"\"\n\"" + (random() % 2 == 0 ? "y" : "");
          expected += bytes + ",\"\n" + (text.back() == 'y' ? "y|" : "|");
          ++line;
        } else {
          text += bytes;
          expected += bytes + "|";
        }
      }
      text += random() % 2 == 0 ? "\n" : "\r\n";
      ++line;
    }
    std::istringstream input(text);
    RecordReader reader(input, {",;", '"'});
    std::string found;
    for (std::span<const Record> records = reader.next(); !records.empty(); records = reader.next()) {
      for (const Record& record : records) {
        found += std::to_string(record.line) + ":";
        for (const std::string_view field : record.fields) {
          found.append(field) += "|";
        }
      }
    }
    ASSERT_EQ(found, expected) << text;
    ASSERT_EQ(reader.bytesRead(), text.size());
  }
}

}  // namespace
}  // namespace genostat::standalone
