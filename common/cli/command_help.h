// What a command's help says beside its options: the same data makes the help in a terminal and the manual
// page.
#pragma once

#include <string>
#include <vector>

namespace genostat::common {

struct HelpEntry {
  std::string term;
  std::string text;  // may be empty

  bool operator==(const HelpEntry&) const = default;
};

struct HelpSection {
  std::string title;
  std::vector<HelpEntry> entries;
  bool commands =
      false;  // the terms are command lines, continued as a shell takes them where they are too long
};

struct CommandHelp {
  std::vector<std::string> paragraphs;
  std::vector<HelpSection> sections;
  std::vector<HelpEntry> arguments;  // of a form of call that is not parsed here
};

}  // namespace genostat::common
