#include "standalone/console/shell/words.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

constexpr std::array kShellWords = {
    ShellWord{"jobs", ShellVerb::Jobs}, ShellWord{"cancel", ShellVerb::Cancel},
    ShellWord{"wait", ShellVerb::Wait}, ShellWord{"datasets", ShellVerb::Datasets},
    ShellWord{"show", ShellVerb::Show}, ShellWord{"output", ShellVerb::Output},
    ShellWord{"run", ShellVerb::Run},   ShellWord{"help", ShellVerb::Help},
    ShellWord{"quit", ShellVerb::Quit}, ShellWord{"exit", ShellVerb::Quit},
};

constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view withoutFinalPeriod(std::string_view line) {
  const std::size_t last = line.find_last_not_of(kBlanks);
  if (last == std::string_view::npos) return {};
  return line.substr(0, line[last] == '.' ? last : last + 1);
}

}  // namespace

std::span<const ShellWord> shellWords() {
  return kShellWords;
}

std::string_view nameOf(ShellVerb verb) {
  return std::ranges::find(kShellWords, verb, &ShellWord::verb)->name;
}

std::vector<ShellArgument> splitShellLine(std::string_view line) {
  line = withoutFinalPeriod(line);
  std::vector<ShellArgument> parts;
  std::size_t i = 0;
  while ((i = line.find_first_not_of(kBlanks, i)) != std::string_view::npos) {
    ShellArgument part{{}, i, i};
    const char quote = line[i];
    if (quote == '\'' || quote == '"') {
      for (++i; i < line.size(); ++i) {
        if (line[i] == quote) {
          ++i;
          if (i == line.size() || line[i] != quote) break;
        }
        part.text += line[i];
      }
    } else {
      i = std::min(line.find_first_of(kBlanks, i), line.size());
      part.text = line.substr(part.begin, i - part.begin);
    }
    part.end = i;
    parts.push_back(std::move(part));
  }
  return parts;
}

FirstWord classifyFirstWord(std::string_view line, std::span<const std::string_view> commands) {
  const std::vector<ShellArgument> parts = splitShellLine(line);
  if (parts.empty()) {
    // A lone period is nothing either.
    return {FirstWord::Kind::Empty, {}};
  }
  constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const std::string& text = parts.front().text;
  const std::string_view word = std::string_view(text).substr(0, text.find_first_not_of(kLetters));
  if (word.empty()) return {FirstWord::Kind::Command, {}};
  std::vector<std::string_view> hostWords;
  for (const std::string_view command : commands) {
    hostWords.push_back(command.substr(0, command.find(' ')));
  }
  std::ranges::sort(hostWords);
  hostWords.erase(std::unique(hostWords.begin(), hostWords.end()), hostWords.end());
  if (matchKeyword(word, hostWords)) return {FirstWord::Kind::Command, {}};
  std::vector<std::string_view> names;
  std::ranges::transform(kShellWords, std::back_inserter(names), &ShellWord::name);
  if (const auto index = matchKeyword(word, names)) {
    return {FirstWord::Kind::Shell, kShellWords[*index].verb};
  }
  std::vector<std::string_view> all = hostWords;
  all.insert(all.end(), names.begin(), names.end());
  const auto nearest = nearestKeyword(word, all);
  const auto shell = nearest ? std::ranges::find(names, *nearest) : names.end();
  const std::string meant(nearest.value_or(std::string_view()));
  if (shell == names.end()) return {FirstWord::Kind::Unknown, {}, meant};
  return {FirstWord::Kind::Misspelt, kShellWords[static_cast<std::size_t>(shell - names.begin())].verb,
          meant};
}

}  // namespace genostat::standalone
