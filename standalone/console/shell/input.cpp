#include "standalone/console/shell/input.h"

#include <memory>

#include "standalone/syntax/command.h"

namespace genostat::standalone {

bool ShellInput::add(std::string_view line, std::size_t lineNumber) {
  if (text_.empty()) firstLine_ = lineNumber;
  text_.append(line).push_back('\n');
  // Only such lines can end a command; the others are not worth a look at the whole text.
  const std::size_t last = line.find_last_not_of(" \t\r\v\f");
  const bool mayEnd =
      last == std::string_view::npos || line[last] == '.' || line.find("*/") != std::string_view::npos;
  return mayEnd && endsCommand();
}

// Whether a word on the next line would begin a command of its own.
bool ShellInput::endsCommand() const {
  constexpr std::string_view kNext = "X";
  const auto source = std::make_shared<const SourceText>(SourceText{{}, text_ + std::string(kNext)});
  CommandScanner scanner(source);
  bool separate = false;
  while (const auto item = scanner.next()) {
    if (item->error) {
      // A comment that is not closed goes on, whatever the lines end with.
      const auto& range = item->error->range;
      if (range && source->text.compare(range->begin, 2, "/*") == 0) return false;
      separate = false;
      continue;
    }
    separate = item->command.tokens.front().range.begin == text_.size();
  }
  return separate;
}

}  // namespace genostat::standalone
