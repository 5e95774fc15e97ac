#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "standalone/syntax/command.h"

namespace genostat::standalone::test {

inline SourcePtr makeSource(std::string_view text) {
  return std::make_shared<const SourceText>(SourceText{"run.syntax", std::string(text)});
}

// The one command that `text` holds.
inline Command scanOne(std::string_view text) {
  ScanResult result = scanCommands(makeSource(text));
  if (result.items.size() != 1 || result.items[0].error) throw std::logic_error(std::string(text));
  return std::move(result.items[0].command);
}

}  // namespace genostat::standalone::test
