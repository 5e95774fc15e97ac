#include "standalone/session/sample_names.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace genostat::standalone {

namespace {

using ReadMark = SampleNameParts::ReadMark;

bool isDecimal(char c) {
  return c >= '0' && c <= '9';
}

// The digits that a name ends in, at most four.
std::string_view digitsAtEnd(std::string_view name) {
  std::size_t count = 0;
  while (count < name.size() && isDecimal(name[name.size() - 1 - count])) {
    ++count;
  }
  return count > 4 ? std::string_view() : name.substr(name.size() - count);
}

int decimalValue(std::string_view digits) {
  int value = 0;
  for (const char c : digits) {
    value = 10 * value + (c - '0');
  }
  return value;
}

// Takes an ending such as "_L001" off and returns its number; 0 where there is no such ending, or nothing in
// front of it. `width` is the number of digits; 0: any.
int takeNumber(std::string_view& name, std::string_view mark, std::size_t width) {
  const std::string_view digits = digitsAtEnd(name);
  const std::string_view front = name.substr(0, name.size() - digits.size());
  if (digits.empty() || (width != 0 && digits.size() != width)) return 0;
  if (front.size() <= mark.size() || !front.ends_with(mark)) return 0;
  const int value = decimalValue(digits);
  if (value > 0) name = front.substr(0, front.size() - mark.size());
  return value;
}

// The number of a read, 1 or 2, by one of these marks.
template <std::size_t count>
int takeRead(std::string_view& name, const std::array<std::string_view, count>& marks) {
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

std::string threeDigits(int number) {
  std::string digits = std::to_string(number);
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  return digits;
}

std::string shownName(const SampleNameParts& parts, const std::string& whole, Shown shown) {
  if (shown == Shown::All) return whole;
  std::string name = parts.name;
  if (shown == Shown::Number && parts.number > 0) name += "_S" + std::to_string(parts.number);
  if (shown != Shown::Name && parts.lane > 0) name += "_L" + threeDigits(parts.lane);
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

// Which names are the two reads of the same fragments.
class Pairs {
 public:
  Pairs(const std::vector<std::string>& names, const std::vector<SampleNameParts>& parts,
        const std::vector<std::uint64_t>& reads)
      : names_(names), reads_(reads), all_(names.begin(), names.end()) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (parts[i].read > 0) byKey_[pairKey(names[i], parts[i].mark)].push_back(i);
    }
  }

  // By index, where there is a partner.
  std::map<std::size_t, std::size_t> partners(const std::vector<SampleNameParts>& parts) const {
    std::map<std::size_t, std::size_t> partners;
    for (const auto& [key, members] : byKey_) {
      if (members.size() != 2 || parts[members[0]].read == parts[members[1]].read) continue;
      if (parts[members[0]].mark == ReadMark::Digit && !isLikelyPair(members[0], members[1])) continue;
      partners[members[0]] = members[1];
      partners[members[1]] = members[0];
    }
    return partners;
  }

 private:
  bool isLikelyPair(std::size_t one, std::size_t other) const {
    if (reads_.size() == names_.size() && reads_[one] != reads_[other]) return false;
    std::string neighbour = names_[one];
    constexpr std::string_view kContinuing = "03";
    return std::none_of(kContinuing.begin(), kContinuing.end(), [&](char digit) {
      neighbour.back() = digit;
      return all_.contains(neighbour);
    });
  }

  const std::vector<std::string>& names_;
  const std::vector<std::uint64_t>& reads_;
  std::set<std::string> all_;
  std::map<std::string, std::vector<std::size_t>> byKey_;
};

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
  const std::map<std::size_t, std::size_t> partners = Pairs(names, parts, reads).partners(parts);
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
