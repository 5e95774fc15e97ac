// Lines of command syntax, gathered until they make a command.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace genostat::standalone {

class ShellInput {
 public:
  bool empty() const { return text_.empty(); }
  const std::string& text() const { return text_; }
  // The number of the first of the lines; lines count from 1.
  std::size_t firstLine() const { return firstLine_; }

  // True when the command ends with this line, by the rules of command syntax.
  bool add(std::string_view line, std::size_t lineNumber);
  void clear() { text_.clear(); }

 private:
  bool endsCommand() const;

  std::string text_;
  std::size_t firstLine_ = 0;
};

}  // namespace genostat::standalone
