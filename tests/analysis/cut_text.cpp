#include "tests/analysis/cut_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>

#include "analysis/fastq/fastq_error.h"
#include "analysis/fastq/record_cutter.h"

namespace genostat::test {

namespace {

using analysis::Batch;

// A chunk of exactly this text; a vector load may read the padding after it and nothing else.
void fill(Batch& batch, std::string_view text) {
  batch.chunk.text = analysis::TextBuffer();
  batch.chunk.text.reserve(text.size());
  batch.chunk.size = text.size();
  if (!text.empty()) std::memcpy(batch.chunk.text.data(), text.data(), text.size());
  batch.lineFeeds = std::make_unique<std::uint32_t[]>(text.size());
  batch.lineFeedCount = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') batch.lineFeeds[batch.lineFeedCount++] = static_cast<std::uint32_t>(i);
  }
}

// What the measuring threads do with a batch, as far as rules go.
void harvest(const Batch& batch, CutResult& result) {
  if (!result.error.empty()) return;
  std::uint64_t filled = 0;
  std::uint64_t longest = 0;
  for (const auto& [header, sequence, quality] : result.records) {
    filled += sequence.empty() ? 0U : 1U;
    longest = std::max<std::uint64_t>(longest, sequence.size());
  }
  result.countsAgree &= batch.recordsBefore == result.records.size() && batch.filledBefore == filled &&
                        batch.longestBefore == longest;
  for (const analysis::Record& record : batch.records) {
    const std::optional<analysis::FastqError> defect =
        analysis::qualityDefect(record, result.records.size() + 1);
    if (defect) {
      result.error = defect->what();
      return;
    }
    result.records.emplace_back(record.header, record.sequence, record.quality);
  }
  if (batch.error) result.error = batch.error->what();
}

}  // namespace

CutResult cutInChunks(std::string_view text, std::span<const std::size_t> sizes, const std::string& defect) {
  CutResult result;
  analysis::RecordCutter cutter;
  // Views must hold until their batch is used again, whatever is cut meanwhile.
  std::array<Batch, 3> ring;
  std::size_t number = 0;
  for (bool last = false; !last; ++number) {
    Batch& batch = ring[number % ring.size()];
    if (number >= ring.size()) harvest(batch, result);
    const std::size_t size = std::min(text.size(), sizes[number % sizes.size()]);
    fill(batch, text.substr(0, size));
    text.remove_prefix(size);
    last = text.empty();
    if (last) batch.chunk.defect = defect;
    cutter.cut(batch, last);
    last = last || batch.error.has_value();
  }
  for (std::size_t i = number - std::min(number, ring.size()); i < number; ++i) {
    harvest(ring[i % ring.size()], result);
  }
  return result;
}

}  // namespace genostat::test
