// Finds the handler of a command by its first words.
#pragma once

#include <string_view>
#include <vector>

#include "standalone/session/command_context.h"

namespace genostat::standalone {

class Dispatcher {
 public:
  // A handler's name is one or two words in upper case; the names' characters outlive this object.
  explicit Dispatcher(std::vector<CommandHandler> handlers);

  // Names match in any case, each word abbreviated to three or more letters where that is unique.
  // Throws CommandError at the word that does not fit.
  const CommandHandler& find(const Command& command) const;

  std::vector<std::string_view> names() const;

 private:
  std::vector<CommandHandler> handlers_;
};

}  // namespace genostat::standalone
