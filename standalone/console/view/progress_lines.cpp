#include "standalone/console/view/progress_lines.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include "common/text/printable_text.h"
#include "common/text/utf8.h"
#include "standalone/console/qc/text.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr double kMega = 1e6;
constexpr double kGiga = 1e9;
// What a job of an unknown analysis, or one that has just begun, is worth a line after.
constexpr double kWorthALine = 1;
constexpr double kRateAfter = 0.1;
// Rates of the first moments say nothing about the rest.
constexpr double kEstimateAfter = 2;
constexpr double kLongestEstimate = 99 * 3600;
constexpr int kLeastName = 8;
constexpr std::string_view kGapInLine = "  ";

// With so many decimals.
std::string decimalText(double value, int places) {
  std::array<char, 64> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, places);
  return {text.data(), end.ptr};
}

std::string rateText(double bytesPerSecond) {
  const double rate = bytesPerSecond / kMega;
  return translated("{1} MB/s", {decimalText(rate, rate < 9.95 ? 1 : 0)});
}

std::string percentText(std::uint64_t part, std::uint64_t whole) {
  // A file that grows while it is read has no more than all of it read.
  const double share = std::min(1.0, static_cast<double>(part) / static_cast<double>(whole));
  return translated("{1} %", {decimalText(100 * share, 0)});
}

std::string bytesText(std::uint64_t done, std::uint64_t total) {
  const auto all = static_cast<double>(total > 0 ? total : done);
  const bool large = all >= 10 * kGiga;
  const double unit = large ? kGiga : kMega;
  const int places = large || all < 10 * kMega ? 1 : 0;
  const auto text = [&](std::uint64_t bytes) {
    return decimalText(static_cast<double>(bytes) / unit, places);
  };
  if (total == 0) return large ? translated("{1} GB", {text(done)}) : translated("{1} MB", {text(done)});
  const std::string part = text(std::min(done, total));
  return large ? translated("{1} of {2} GB", {part, text(total)})
               : translated("{1} of {2} MB", {part, text(total)});
}

std::string readsText(std::uint64_t reads) {
  const std::string count = shortCount(static_cast<double>(reads));
  return reads == 1 ? translated("{1} read", {count}) : translated("{1} reads", {count});
}

std::string clockText(double seconds) {
  const auto whole = static_cast<std::uint64_t>(std::ceil(seconds));
  const auto twoDigits = [](std::uint64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  const std::uint64_t minutes = whole / 60;
  const std::string end = ':' + twoDigits(whole % 60);
  if (minutes < 60) return std::to_string(minutes) + end;
  return std::to_string(minutes / 60) + ':' + twoDigits(minutes % 60) + end;
}

// Empty where it cannot be foreseen.
std::string timeLeftText(const JobProgress& progress) {
  if (progress.seconds < kEstimateAfter || progress.bytesDone == 0) return {};
  if (progress.bytesDone >= progress.bytesTotal) return {};
  const double left = static_cast<double>(progress.bytesTotal - progress.bytesDone) * progress.seconds /
                      static_cast<double>(progress.bytesDone);
  return left <= kLongestEstimate ? translated("{1} left", {clockText(left)}) : std::string();
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
    parts.push_back({clockText(std::floor(shown.elapsed)), 6});
    return joinedParts(std::move(parts), room, space.unicode);
  }
  const JobProgress& progress = *shown.progress;
  if (progress.samples > 1) {
    parts.push_back({translated("{1} of {2} samples",
                                {std::to_string(progress.finished), std::to_string(progress.samples)}),
                     4});
  }
  if (progress.bytesTotal > 0) parts.push_back({percentText(progress.bytesDone, progress.bytesTotal), 6});
  parts.push_back({bytesText(progress.bytesDone, progress.bytesTotal), 2});
  if (progress.readsDone > 0) parts.push_back({readsText(progress.readsDone), 1});
  if (progress.seconds >= kRateAfter) {
    parts.push_back({rateText(static_cast<double>(progress.bytesDone) / progress.seconds), 3});
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
      parts.push_back({padded(percentText(sample.bytes, sample.size), 5, true), 3});
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
