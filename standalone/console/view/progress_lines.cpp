#include "standalone/console/view/progress_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include "common/text/number_text.h"
#include "common/text/printable_text.h"
#include "common/text/progress_text.h"
#include "common/text/utf8.h"
#include "standalone/console/qc/text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

// What a job of an unknown analysis, or one that has just begun, is worth a line after.
constexpr double kWorthALine = 1;
constexpr double kRateAfter = 0.1;
constexpr int kLeastName = 8;
constexpr std::string_view kGapInLine = "  ";

std::string bytesText(std::uint64_t done, std::uint64_t total) {
  if (total == 0) return common::sizeText(done);
  return translated("{1} of {2}",
                    {common::sizeNumber(std::min(done, total), total), common::sizeText(total)});
}

std::string readsText(std::uint64_t reads) {
  const std::string count = common::shortCount(static_cast<double>(reads));
  return reads == 1 ? translated("{1} read", {count}) : translated("{1} reads", {count});
}

// Empty where it cannot be foreseen.
std::string timeLeftText(const JobProgress& progress) {
  const auto left = common::secondsLeft(progress.bytesDone, progress.bytesTotal, progress.seconds);
  return left ? translated("{1} left", {common::clockText(*left)}) : std::string();
}

// A part of a line; those with the least weight go first where a line is too long.
struct LinePart {
  std::string text;
  int weight;
};

std::string joinedParts(std::vector<LinePart> parts, int room, bool unicode) {
  std::erase_if(parts, [](const LinePart& part) { return part.text.empty(); });
  const auto lineOf = [&] {
    std::string line;
    for (const LinePart& part : parts) {
      line += (line.empty() ? std::string_view() : kGapInLine);
      line += part.text;
    }
    return line;
  };
  while (parts.size() > 1 && common::displayWidth(lineOf()) > room) {
    parts.erase(std::ranges::min_element(parts, {}, &LinePart::weight));
  }
  return shortenedName(lineOf(), room, unicode);
}

std::string jobLine(const ShownProgress& shown, const LineSpace& space, int room) {
  const std::string name =
      shown.jobName.empty() ? translated("(unnamed)") : common::printableText(shown.jobName);
  std::vector<LinePart> parts = {{shortenedName(name, std::max(room / 3, kLeastName), space.unicode), 7}};
  if (!shown.progress) {
    parts.push_back({common::clockText(std::floor(shown.elapsed)), 6});
    return joinedParts(std::move(parts), room, space.unicode);
  }
  const JobProgress& progress = *shown.progress;
  if (progress.samples > 1) {
    parts.push_back({translated("{1} of {2} samples",
                                {std::to_string(progress.finished), std::to_string(progress.samples)}),
                     4});
  }
  if (progress.bytesTotal > 0)
    parts.push_back({common::percentText(progress.bytesDone, progress.bytesTotal), 6});
  parts.push_back({bytesText(progress.bytesDone, progress.bytesTotal), 2});
  if (progress.readsDone > 0) parts.push_back({readsText(progress.readsDone), 1});
  if (progress.seconds >= kRateAfter) {
    parts.push_back({common::rateText(static_cast<double>(progress.bytesDone) / progress.seconds), 3});
  }
  parts.push_back({timeLeftText(progress), 5});
  return joinedParts(std::move(parts), room, space.unicode);
}

std::string bar(const SampleProgress& sample, int width, bool unicode) {
  const double share = std::min(1.0, static_cast<double>(sample.bytes) / static_cast<double>(sample.size));
  const int filled = static_cast<int>(share * width);
  std::string text;
  for (int i = 0; i < width; ++i) {
    text += i < filled ? (unicode ? "\u2588" : "#") : (unicode ? "\u2591" : ".");
  }
  return text;
}

std::string padded(std::string text, int width, bool atFront) {
  const int missing = std::max(width - common::displayWidth(text), 0);
  text.insert(atFront ? 0 : text.size(), static_cast<std::size_t>(missing), ' ');
  return text;
}

std::vector<std::string> sampleLines(const std::vector<SampleProgress>& samples, std::size_t count,
                                     const LineSpace& space, int room) {
  constexpr int kIndent = 2;
  constexpr int kNumbers = 21;  // "  100 %  24.3k reads", about
  const int barWidth = room >= 60 ? 20 : room >= 44 ? 10 : 0;
  const int barRoom = barWidth > 0 ? barWidth + 2 : 0;
  const int nameRoom = std::max(room - kIndent - kNumbers - barRoom, kLeastName);
  std::vector<std::string> names;
  int nameWidth = 0;
  for (std::size_t i = 0; i < count; ++i) {
    names.push_back(shortenedName(common::printableText(samples[i].name), nameRoom, space.unicode));
    nameWidth = std::max(nameWidth, common::displayWidth(names.back()));
  }
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < count; ++i) {
    const SampleProgress& sample = samples[i];
    std::vector<LinePart> parts = {{std::string(kIndent, ' ') + padded(names[i], nameWidth, false), 4}};
    if (sample.size > 0) {
      if (barWidth > 0) parts.push_back({bar(sample, barWidth, space.unicode), 1});
      parts.push_back({padded(common::percentText(sample.bytes, sample.size), 5, true), 3});
    } else {
      parts.push_back({bytesText(sample.bytes, 0), 3});
    }
    parts.push_back({readsText(sample.reads), 2});
    lines.push_back(joinedParts(std::move(parts), room, space.unicode));
  }
  return lines;
}

}  // namespace

std::vector<std::string> progressLines(const ShownProgress& shown, const LineSpace& space) {
  if (!shown.progress && shown.elapsed < kWorthALine) return {};
  // The last column stays free: some terminals begin a new row as soon as it is filled.
  const int room = std::max(space.width - 1, 1);
  std::vector<std::string> lines = {jobLine(shown, space, room)};
  // A row each for the cursor, the job and those that wait.
  const int taken = shown.waiting > 0 ? 3 : 2;
  const auto rows = static_cast<std::size_t>(std::max(space.height - taken, 0));
  if (shown.progress && rows > 0) {
    const std::vector<SampleProgress>& samples = shown.progress->running;
    const bool all = samples.size() <= rows;
    const std::size_t count = all ? samples.size() : rows - 1;
    const std::vector<std::string> read = sampleLines(samples, count, space, room);
    lines.insert(lines.end(), read.begin(), read.end());
    if (!all) {
      const std::string more =
          translatedCount(samples.size() - count, "and {1} more sample", "and {1} more samples");
      lines.push_back(joinedParts({{"  " + more, 1}}, room, space.unicode));
    }
  }
  if (shown.waiting > 0) {
    const std::string waiting = translatedCount(shown.waiting, "{1} more job waits", "{1} more jobs wait");
    lines.push_back(joinedParts({{waiting, 1}}, room, space.unicode));
  }
  return lines;
}

}  // namespace genostat::standalone
