// Records: rules, places of errors, line ends, buffer boundaries, compression.
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <memory>
#include <random>

#include "analysis/fastq/gzip_source.h"
#include "analysis/fastq/record_reader.h"
#include "tests/analysis/reference_parser.h"

namespace genostat::analysis {
namespace {

using test::ReferenceResult;

// Bytes from memory, a few at a time.
class MemorySource : public ByteSource {
 public:
  MemorySource(std::string bytes, std::size_t step) : bytes_(std::move(bytes)), step_(step) {}

  std::size_t read(std::span<char> into) override {
    const std::size_t size = std::min({into.size(), step_, bytes_.size() - at_});
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), size, into.begin());
    at_ += size;
    return size;
  }

 private:
  std::string bytes_;
  std::size_t step_;
  std::size_t at_ = 0;
};

ReferenceResult readAll(ByteSource& source, std::size_t bufferSize) {
  ReferenceResult result;
  RecordReader reader(source, bufferSize);
  try {
    for (auto batch = reader.next(); !batch.empty(); batch = reader.next()) {
      for (const Record& record : batch) {
        result.records.emplace_back(record.header, record.sequence, record.quality);
      }
    }
  } catch (const FastqError& error) {
    result.error = error.what();
  }
  return result;
}

ReferenceResult readPlain(const std::string& text, std::size_t bufferSize, std::size_t step = 1000) {
  MemorySource source(text, step);
  return readAll(source, bufferSize);
}

ReferenceResult readGzip(const std::string& bytes, std::size_t bufferSize, std::size_t inputSize = 1000) {
  GzipSource source(std::make_unique<MemorySource>(bytes, inputSize), inputSize);
  return readAll(source, bufferSize);
}

std::string gzip(const std::string& text) {
  z_stream stream = {};
  deflateInit2(&stream, 6, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
  std::string in = text;
  std::string out(deflateBound(&stream, static_cast<uLong>(in.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(in.data());
  stream.avail_in = static_cast<uInt>(in.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

const std::string kTwoRecords = "@a\nACGT\n+\nIIII\n@b\nNN\n+b\n!~\n";

TEST(RecordReader, TellsWhatIsWrongAndWhere) {
  struct Case {
    std::string text;
    std::string error;
  };
  const std::string good = "@r\nACGT\n+\nIIII\n";
  const std::vector<Case> cases = {
      {"", "the file is empty"},
      {"\n\r\n\n", "the file holds no records"},
      {good + "\n\n" + good + "\r\n", ""},
      {"@r\r\nACGT\r\n+\r\nIIII", ""},
      {"@r\nACGT\n+\nIIII\r", ""},
      {"@r\n\n+\n\n", ""},
      {"@r\n\n+\n", ""},
      {"@r\nT...\n+\nIIII\n", ""},
      {"@r\n\n+", "record 1, line 4: the file ends inside the record, before its quality"},
      {good + "ACGT\n", "record 2, line 5: the header starts with 'A' instead of '@'"},
      {"\xEF\xBB\xBF" + good, "record 1, line 1: the header starts with character code 239 instead of '@'"},
      {std::string(100, '\x07'), "record 1, line 1: the header starts with character code 7 instead of '@'"},
      {"@r\nACGT\nACGT\n+\n", "record 1, line 3: the third line starts with 'A' instead of '+'"},
      {"@r\nACGT\n\n", "record 1, line 3: the third line starts with a line end instead of '+'"},
      {good + "\n@r\nACGTA\n+\nIIII\n", "record 2, line 9: the quality has 4 characters, the sequence 5"},
      {"@r\nACGT\n+\nII\x7FI\n",
       "record 1, line 4: the quality has character code 127 at position 3; allowed are '!' to '~'"},
      {"@r\nAC\n+\nI \n",
       "record 1, line 4: the quality has character code 32 at position 2; allowed are '!' to '~'"},
      {good + "@r", "record 2, line 6: the file ends inside the record, before its sequence"},
      {good + "@r\nACGT\n", "record 2, line 7: the file ends inside the record, before its '+' line"},
      {good + "@r\nACGT\n+\n", "record 2, line 8: the file ends inside the record, before its quality"},
      {"@r\nT012.3\n+\nIIIII\n",
       "record 1, line 2: the read is in colour space (a base followed by digits); only reads of bases can "
       "be analysed"},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(readPlain(one.text, 1 << 18).error, one.error) << one.text;
    EXPECT_EQ(test::parseSlowly(one.text).error, one.error) << one.text;
  }
}

// Random texts, most of them wrong somewhere: same records or same error as the reference at every buffer
// size.
TEST(RecordReader, AgreesWithTheReferenceOnRandomText) {
  std::mt19937 random(20240611);
  const std::vector<std::string> pieces = {
      "@r",
      "@",
      "A",
      "acgtn",
      "+",
      "+x",
      "I",
      "!!!!!",
      "~",
      " ",
      "T01.2",
      "\r",
      "\n",
      "\n",
      "\n",
      "\r\n",
      "\n\n",
      "@r 1\nACGTN\n+\nIIIII\n",
      "@\r\nacg\r\n+\r\n@+I\r\n",
      "@\n\n+\n\n",
      "@long\n" + std::string(300, 'G') + "\n+\n" + std::string(300, '@') + "\n"};
  const auto below = [&](std::size_t limit) { return std::size_t{random() % limit}; };
  std::size_t accepted = 0;
  for (int round = 0; round < 1500; ++round) {
    std::string text;
    // Whole records first in most rounds, so that errors come late as well as early.
    for (std::size_t n = below(8); n > 0; --n) {
      text += pieces[pieces.size() - 1 - below(4)];
    }
    for (std::size_t n = round % 3 == 0 ? 0 : below(12); n > 0; --n) {
      text += pieces[below(pieces.size())];
    }
    const ReferenceResult expected = test::parseSlowly(text);
    accepted += expected.error.empty();
    const std::size_t cut = below(text.size() + 1);
    const std::string packed = gzip(text.substr(0, cut)) + gzip("") + gzip(text.substr(cut));
    for (const std::size_t bufferSize : {1U, 2U, 5U, 64U, 1U << 18}) {
      const ReferenceResult plain = readPlain(text, bufferSize, 1 + below(40));
      const ReferenceResult unpacked = readGzip(packed, bufferSize, 2 + below(40));
      ASSERT_EQ(plain.error, expected.error) << text << "\nbuffer " << bufferSize;
      ASSERT_EQ(unpacked.error, expected.error) << text << "\nbuffer " << bufferSize;
      if (!expected.error.empty()) continue;
      ASSERT_EQ(plain.records, expected.records) << text << "\nbuffer " << bufferSize;
      ASSERT_EQ(unpacked.records, expected.records) << text << "\nbuffer " << bufferSize;
    }
  }
  EXPECT_GT(accepted, 200U);
  EXPECT_LT(accepted, 1300U);
}

TEST(RecordReader, TakesReadsLongerThanItsBuffer) {
  std::string text;
  for (const std::size_t length : {100'000U, 3U, 700'001U, 0U, 262'144U}) {
    text += "@r\n" + std::string(length, 'C') + "\n+\n" + std::string(length, 'J') + "\n";
  }
  EXPECT_EQ(readPlain(text, RecordReader::kDefaultBufferSize, 1 << 16).records,
            test::parseSlowly(text).records);
}

// However the compressed bytes are cut or changed, the reader gives the right records or an error.
TEST(GzipSource, NoticesEveryDefect) {
  const std::string packed = gzip(kTwoRecords);
  const auto right = test::parseSlowly(kTwoRecords).records;
  for (std::size_t size = 2; size < packed.size(); ++size) {
    const std::string error = readGzip(packed.substr(0, size), 64).error;
    EXPECT_NE(
        error.find(": the compressed data end too early, at byte " + std::to_string(size) + " of the file"),
        std::string::npos)
        << error;
    EXPECT_EQ(readGzip(packed.substr(0, size), 3, 2).error, error);
  }
  for (std::size_t at = 0; at < packed.size() * 8; ++at) {
    std::string changed = packed;
    changed[at / 8] = static_cast<char>(changed[at / 8] ^ (1 << at % 8));
    const ReferenceResult result = readGzip(changed, 64);
    EXPECT_TRUE(!result.error.empty() || result.records == right) << "bit " << at;
  }
  const std::string place =
      "record 3, line 9: after the compressed data follow bytes that are not compressed, at byte " +
      std::to_string(packed.size()) + " of the file";
  EXPECT_EQ(readGzip(packed + "@c\nA\n+\nI\n", 64).error, place);
  EXPECT_EQ(readGzip(packed + "\x1f", 64, 2).error, place);
  std::string wrongSum = packed;
  wrongSum[packed.size() - 8] = static_cast<char>(wrongSum[packed.size() - 8] ^ 1);
  EXPECT_EQ(readGzip(wrongSum, 64).error,
            "record 3, line 9: the compressed data are corrupt (incorrect data check), "
            "at byte " +
                std::to_string(packed.size() - 4) + " of the file");
}

}  // namespace
}  // namespace genostat::analysis
