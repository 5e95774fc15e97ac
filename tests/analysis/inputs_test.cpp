// From the bytes of a file to its text: every compression form, every defect.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <thread>

#include "analysis/fastq/chunk_source.h"
#include "tests/analysis/packed_text.h"

namespace genostat::analysis {
namespace {

using test::bgzf;
using test::bgzfBlock;
using test::gzip;

constexpr std::size_t kAll = std::size_t{1} << 30;

// Bytes from memory, a few at a time; then the end, or a failure.
class MemorySource : public ByteSource {
 public:
  MemorySource(std::string bytes, std::size_t step, std::string failure = {})
      : bytes_(std::move(bytes)), step_(step), failure_(std::move(failure)) {}

  std::size_t read(std::span<char> into) override {
    const std::size_t size = std::min({into.size(), step_, bytes_.size() - at_});
    if (size == 0 && !failure_.empty()) throw SourceError(failure_);
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), size, into.begin());
    at_ += size;
    return size;
  }

 private:
  std::string bytes_;
  std::size_t step_;
  std::string failure_;
  std::size_t at_ = 0;
};

struct Outcome {
  std::string text;
  std::string defect;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << outcome.text.size() << " bytes of text, defect: " << outcome.defect;
}

// What the chunks hold up to the first defect. One chunk's memory serves them all.
Outcome unpack(const std::string& bytes, std::size_t chunkSize, std::size_t step = kAll,
               const std::string& failure = {}) {
  const auto source = openChunks(std::make_unique<MemorySource>(bytes, step, failure), chunkSize);
  Outcome outcome;
  Chunk chunk;
  while (outcome.defect.empty() && source->fetch(chunk)) {
    source->expand(chunk);
    EXPECT_LE(chunk.size, std::max(chunkSize, std::size_t{1} << 16));
    outcome.text.append(chunk.text.data(), chunk.size);
    outcome.defect = chunk.defect;
  }
  EXPECT_TRUE(!outcome.defect.empty() || source->bytesRead() == bytes.size()) << source->bytesRead();
  EXPECT_TRUE(!outcome.defect.empty() || !source->fetch(chunk)) << "a chunk after the last";
  return outcome;
}

// Reads of about `size` bytes in all.
std::string reads(std::size_t size) {
  std::mt19937 random(11);
  std::string text;
  while (text.size() < size) {
    text += "@read " + std::to_string(random() % 1000) + "\n";
    const std::size_t length = random() % 200;
    for (std::size_t i = 0; i < length; ++i) {
      text += "ACGT"[random() % 4];
    }
    text += "\n+\n";
    for (std::size_t i = 0; i < length; ++i) {
      text += static_cast<char>('!' + random() % 40);
    }
    text += '\n';
  }
  return text;
}

TEST(Chunks, AllFormsOfATextGiveIt) {
  for (const std::size_t size : {std::size_t{2000}, std::size_t{300'000}}) {
    const std::string text = reads(size);
    const std::string head = text.substr(0, size / 3);
    const std::string tail = text.substr(size / 3);
    std::string members;
    for (std::size_t at = 0; at < text.size(); at += size / 7) {
      members += gzip(text.substr(at, size / 7)) + gzip("");
    }
    const std::string empty = bgzfBlock("");
    const std::map<std::string, std::string> forms = {
        {"plain", text},
        {"stored", gzip(text, {.level = 0})},
        {"level 1", gzip(text, {.level = 1})},
        {"level 9", gzip(text, {.level = 9})},
        {"fixed codes", gzip(text, {.fixedCodes = true})},
        {"every header field", gzip(text, {.extra = std::string("XX\3\0abc", 7), .namesAndSum = true})},
        {"members", gzip("") + members},
        {"a member for each letter",
         gzip(head.substr(0, 1)) + gzip(head.substr(1, 1)) + gzip(text.substr(2))},
        {"bgzf", bgzf(text) + empty},
        {"bgzf without an end mark", bgzf(text)},
        {"bgzf in small blocks", empty + bgzf(head, 100) + empty + empty + bgzf(tail, 170) + empty},
        {"bgzf with more fields",
         bgzfBlock(text.substr(0, 900), std::string("AB\2\0zz", 6)) + bgzf(text.substr(900))},
        {"bgzf, then gzip", bgzf(head) + empty + gzip(tail)},
        {"gzip, then bgzf", gzip(head) + bgzf(tail) + empty},
    };
    for (const auto& [name, bytes] : forms) {
      for (const std::size_t chunkSize : {1U, 7U, 1000U, 65280U, 1U << 20}) {
        if (text.size() / chunkSize > 2500) continue;
        for (const std::size_t step : {std::size_t{1}, std::size_t{4099}, kAll}) {
          if (text.size() / step > 2500) continue;
          ASSERT_EQ(unpack(bytes, chunkSize, step), (Outcome{text, ""}))
              << name << ", chunks of " << chunkSize << ", " << step << " bytes at a time";
        }
      }
    }
  }
  for (const std::string& bytes : {std::string(), gzip(""), gzip("") + gzip(""), bgzfBlock("")}) {
    EXPECT_EQ(unpack(bytes, 100), (Outcome{"", ""}));
  }
  for (const std::string& shortText : {std::string("@"), std::string("\x1f"), std::string("\x1f@r")}) {
    EXPECT_EQ(unpack(shortText, 100), (Outcome{shortText, ""}));
  }
}

std::string changed(std::string bytes, std::size_t at, char value) {
  bytes.at(at) = value;
  return bytes;
}

std::string corrupt(const std::string& reason, std::size_t offset) {
  return "the compressed data are corrupt (" + reason + "), at byte " + std::to_string(offset) +
         " of the file";
}

TEST(Chunks, EveryDefectIsToldAfterTheTextBeforeIt) {
  const std::string text = reads(5000);
  const std::string member = gzip(text);
  const std::string named = gzip(text, {.namesAndSum = true});
  const std::string block = bgzfBlock(text);
  const std::string foreign = "after the compressed data follow bytes that are not compressed, at byte ";
  struct Case {
    std::string bytes;
    Outcome outcome;
  };
  std::vector<Case> cases = {
      {member + "@r\n", {text, foreign + std::to_string(member.size()) + " of the file"}},
      {block + "\x1fr\n", {text, foreign + std::to_string(block.size()) + " of the file"}},
      {block + "BC", {text, foreign + std::to_string(block.size()) + " of the file"}},
      // Method, flags and sums of the header.
      {changed(member, 2, 7), {"", corrupt("unknown method", 0)}},
      {block + changed(member, 3, '\x80'), {text, corrupt("unknown flags", block.size())}},
      {member + changed(named, 12, 'x'), {text, corrupt("wrong header checksum", member.size())}},
      {gzip("", {.extra = std::string("A\0\0\0", 4)}) + std::string("\x1f\x8b\x08\x08", 4) +
           std::string(1 << 21, 'n'),
       {"", corrupt("endless header", gzip("").size() + 6)}},
      // Trailers.
      {member + changed(member, member.size() - 8, '!'),
       {text + text, corrupt("wrong checksum", 2 * member.size() - 8)}},
      {changed(member, member.size() - 1, '!') + member, {text, corrupt("wrong length", member.size() - 8)}},
      {block + changed(block, block.size() - 8, '!') + block,
       {text, corrupt("wrong checksum", block.size())}},
      {block + changed(block, block.size() - 4, '!') + block, {text, corrupt("invalid data", block.size())}},
      {block + changed(block, block.size() - 2, '\1') + block, {text, corrupt("wrong length", block.size())}},
      // The size that a block states.
      {block + changed(changed(block, 16, 5), 17, 0), {text, corrupt("wrong block size", block.size())}},
      // Of two defects the first is reported, although the other one is met earlier.
      {changed(block, 30, static_cast<char>(block[30] ^ 64)) + "@r\n", {"", corrupt("invalid data", 0)}},
      // A code of deflate that does not exist.
      {member + changed(member, 10, '\7'), {text, corrupt("invalid data", member.size() + 11)}},
  };
  for (const Case& one : cases) {
    for (const std::size_t chunkSize : {std::size_t{100}, std::size_t{1} << 20}) {
      EXPECT_EQ(unpack(one.bytes, chunkSize), one.outcome) << chunkSize;
    }
  }
  // "ABC", then a match that reaches back too far, or without a distance: nothing wrong comes out.
  for (const std::string& match : {std::string("\x1e\x0d\x00", 3), std::string("\x1e\x7d")}) {
    const Outcome outcome = unpack(gzip("").substr(0, 10) + "\x73\x74\x72" + match + "12345678", 100);
    EXPECT_TRUE(std::string("ABC").starts_with(outcome.text)) << outcome.text;
    EXPECT_TRUE(outcome.defect.starts_with("the compressed data are corrupt (invalid data), at byte 1"))
        << outcome.defect;
  }
  for (const std::string& bytes : {text, member, member + member, block + member.substr(0, 20)}) {
    const std::string broken = "reading the file failed: worn out";
    const Outcome whole = unpack(bytes, 1000);
    EXPECT_EQ(unpack(bytes, 1000, 77, broken), (Outcome{whole.text, broken}));
  }
}

// However the bytes are cut or changed, there is the right text or a defect, after nothing but the right text
// where the defect is an early end.
TEST(Chunks, NoDefectIsMissed) {
  const std::string text = reads(600);
  const std::string half = text.substr(0, 300);
  for (const std::string& bytes :
       {gzip(half, {.namesAndSum = true}) + gzip(text.substr(300), {.fixedCodes = true}),
        gzip(half, {.level = 0}) + gzip(text.substr(300), {.level = 9}),
        bgzfBlock(half) + bgzfBlock(text.substr(300)) + bgzfBlock("")}) {
    for (std::size_t size = 2; size < bytes.size(); ++size) {
      const Outcome outcome = unpack(bytes.substr(0, size), 50);
      EXPECT_TRUE(text.starts_with(outcome.text)) << size;
      const bool whole = outcome.text == half || outcome.text == text;
      EXPECT_TRUE((whole && outcome.defect.empty()) ||
                  outcome.defect ==
                      "the compressed data end too early, at byte " + std::to_string(size) + " of the file")
          << size << ' ' << outcome.defect;
      EXPECT_EQ(unpack(bytes.substr(0, size), kAll / 1024, 3), outcome) << size;
    }
    for (std::size_t bit = 16; bit < bytes.size() * 8; ++bit) {
      const std::string wrong = changed(bytes, bit / 8, static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8));
      const Outcome outcome = unpack(wrong, 1 << 16);
      EXPECT_TRUE(!outcome.defect.empty() || outcome.text == text) << "bit " << bit;
    }
  }
}

TEST(Chunks, BlocksExpandInSeveralThreads) {
  const std::string text = reads(3'000'000);
  const std::string bytes = bgzf(text, 30'000) + gzip(text);
  const auto source = openChunks(std::make_unique<MemorySource>(bytes, 50'000), 100'000);
  std::mutex mutex;
  std::map<std::uint64_t, std::string> parts;
  std::uint64_t tickets = 0;
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      Chunk chunk;
      for (;;) {
        std::unique_lock lock(mutex);
        if (!source->fetch(chunk)) return;
        const std::uint64_t ticket = tickets++;
        lock.unlock();
        source->expand(chunk);
        lock.lock();
        EXPECT_EQ(chunk.defect, "");
        parts[ticket].assign(chunk.text.data(), chunk.size);
      }
    });
  }
  threads.clear();
  std::string joined;
  for (const auto& [ticket, part] : parts) {
    joined += part;
  }
  EXPECT_EQ(joined, text + text);
  EXPECT_EQ(source->bytesRead(), bytes.size());
}

}  // namespace
}  // namespace genostat::analysis
