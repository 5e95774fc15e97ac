#include "standalone/console/qc/sample_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace genostat::standalone {

namespace {

using ReadMark = SampleNameParts::ReadMark;

constexpr std::size_t kLongestNumber = 4;

// Takes an ending such as "_L001" off and returns its number; 0 where there is no such ending, or nothing in
// front of it. `width` is the number of digits; 0: any.
int takeNumber(std::string_view& name, std::string_view mark, std::size_t width) {
  const std::size_t frontSize = name.find_last_not_of("0123456789") + 1;
  const std::string_view front = name.substr(0, frontSize);
  const std::string_view digits = name.substr(frontSize);
  if (digits.empty() || digits.size() > kLongestNumber || (width != 0 && digits.size() != width)) return 0;
  if (front.size() <= mark.size() || !front.ends_with(mark)) return 0;
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (value > 0) name = front.substr(0, front.size() - mark.size());
  return value;
}

// The number of a read, 1 or 2, by one of these marks.
int takeRead(std::string_view& name, std::span<const std::string_view> marks) {
  for (const std::string_view mark : marks) {
    std::string_view rest = name;
    const int read = takeNumber(rest, mark, 1);
    if (read != 1 && read != 2) continue;
    name = rest;
    return read;
  }
  return 0;
}

constexpr std::array<std::string_view, 4> kReadMarks = {"_R", ".R", "_r", ".r"};
constexpr std::array<std::string_view, 1> kDigitMarks = {"_"};

// How much of a name is shown.
enum class Shown { Name, Lane, Number, All };

std::string shownName(const SampleNameParts& parts, const std::string& whole, Shown shown) {
  if (shown == Shown::All) return whole;
  std::string name = parts.name;
  if (shown == Shown::Number && parts.number > 0) name += "_S" + std::to_string(parts.number);
  if (shown != Shown::Name && parts.lane > 0) name += fmt::format("_L{:03}", parts.lane);
  return name;
}

// A name without the number of its read: the same for both.
std::string pairKey(const std::string& name, ReadMark mark) {
  std::string key = name;
  constexpr std::string_view kSequencerTail = "_001";
  const std::size_t behind = mark == ReadMark::Sequencer ? kSequencerTail.size() : 0;
  key.at(key.size() - behind - 1) = '\0';
  return key;
}

// Whether others count on where the name of a read by a digit leaves off: "x_0" or "x_3".
bool isContinued(std::string name, const std::set<std::string>& all) {
  constexpr std::string_view kContinuing = "03";
  return std::ranges::any_of(kContinuing, [&](char digit) {
    name.back() = digit;
    return all.contains(name);
  });
}

// The two reads of the same fragments: the partner's index by each index that has one.
std::map<std::size_t, std::size_t> partnersOf(const std::vector<std::string>& names,
                                              const std::vector<SampleNameParts>& parts,
                                              const std::vector<std::uint64_t>& reads) {
  const std::set<std::string> all(names.begin(), names.end());
  std::map<std::string, std::vector<std::size_t>> byKey;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (parts[i].read > 0) byKey[pairKey(names[i], parts[i].mark)].push_back(i);
  }
  std::map<std::size_t, std::size_t> partners;
  for (const auto& [key, members] : byKey) {
    if (members.size() != 2) continue;
    const std::size_t one = members[0];
    const std::size_t other = members[1];
    if (parts[one].read == parts[other].read) continue;
    const bool differ = reads.size() == names.size() && reads[one] != reads[other];
    if (parts[one].mark == ReadMark::Digit && (differ || isContinued(names[one], all))) continue;
    partners[one] = other;
    partners[other] = one;
  }
  return partners;
}

// Whether samples differ in more than the number of their read.
bool areDifferent(const std::vector<std::size_t>& members, const std::vector<SampleNameParts>& parts,
                  const std::vector<std::string>& names) {
  const auto fragments = [&](std::size_t i) {
    return parts[i].read > 0 ? pairKey(names[i], parts[i].mark) : names[i];
  };
  return std::any_of(members.begin(), members.end(),
                     [&](std::size_t i) { return fragments(i) != fragments(members.front()); });
}

// Shows more of names that are equal, as long as that is so and there is more. Samples whose short names are
// the same show as much as each other.
void tellApart(std::vector<CleanSample>& samples, const std::vector<SampleNameParts>& parts,
               const std::vector<std::string>& names) {
  std::map<std::string, Shown> shown;  // by the short name
  for (bool changed = true; changed;) {
    changed = false;
    std::map<std::string, std::vector<std::size_t>> byName;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      byName[samples[i].name].push_back(i);
    }
    std::set<std::string> unclear;
    for (const auto& [name, members] : byName) {
      if (!areDifferent(members, parts, names)) continue;
      for (const std::size_t i : members) {
        if (shown[parts[i].name] != Shown::All) unclear.insert(parts[i].name);
      }
    }
    for (const std::string& name : unclear) {
      shown[name] = static_cast<Shown>(static_cast<int>(shown[name]) + 1);
      changed = true;
    }
    for (std::size_t i = 0; i < samples.size(); ++i) {
      if (!unclear.contains(parts[i].name)) continue;
      const Shown part = shown[parts[i].name];
      samples[i].name = shownName(parts[i], names[i], part);
      if (part != Shown::All) continue;
      // The whole name says which read it is, and that of the other read is another one.
      samples[i].read = 0;
      samples[i].partner.reset();
    }
  }
}

}  // namespace

SampleNameParts cleanSampleName(std::string_view name) {
  SampleNameParts parts;
  std::string_view rest = name;
  if (name.ends_with("_001")) {
    rest.remove_suffix(4);
    parts.read = takeRead(rest, kReadMarks);
    parts.mark = parts.read > 0 ? ReadMark::Sequencer : ReadMark::None;
    if (parts.read == 0) rest = name;
  } else if ((parts.read = takeRead(rest, kReadMarks)) > 0) {
    parts.mark = ReadMark::Letter;
  } else if ((parts.read = takeRead(rest, kDigitMarks)) > 0) {
    parts.mark = ReadMark::Digit;
  }
  parts.lane = takeNumber(rest, "_L", 3);
  // Elsewhere "S1" may be what somebody calls the sample.
  if (parts.lane > 0 || parts.mark == ReadMark::Sequencer) parts.number = takeNumber(rest, "_S", 0);
  parts.name = rest;
  return parts;
}

std::vector<CleanSample> cleanSampleNames(const std::vector<std::string>& names,
                                          const std::vector<std::uint64_t>& reads) {
  std::vector<SampleNameParts> parts;
  parts.reserve(names.size());
  std::transform(names.begin(), names.end(), std::back_inserter(parts), cleanSampleName);
  const std::map<std::size_t, std::size_t> partners = partnersOf(names, parts, reads);
  std::vector<CleanSample> samples;
  samples.reserve(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto partner = partners.find(i);
    const bool isRead = partner != partners.end() || parts[i].mark == ReadMark::Sequencer;
    // Nothing confirms what the ending looks like.
    if (!isRead && parts[i].read > 0) parts[i] = {.name = names[i]};
    CleanSample& sample = samples.emplace_back();
    sample.name = parts[i].name;
    sample.lane = parts[i].lane;
    sample.read = parts[i].read;
    if (partner != partners.end()) sample.partner = partner->second;
  }
  tellApart(samples, parts, names);
  return samples;
}

}  // namespace genostat::standalone
