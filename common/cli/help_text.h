// The help of a program, made from its options as its other documents are.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace genostat::common {

// The words that are no option's own.
struct HelpWords {
  std::string usage = "Usage";
  std::string arguments = "Arguments";
  std::string options = "Options";
  std::string commands = "Commands";
};

// Has a program and all subcommands that it gets later show their help in lines that fit the width, which is
// asked for when help is shown. Footers follow the conventions of offerDocuments; their paragraphs and
// entries are broken anew, and lines of commands that are too long are continued as a shell takes them.
void shapeHelp(CLI::App& program, std::function<int()> width, HelpWords words = {});

// The columns that help may take: COLUMNS, or the terminal's, or 80; no less than 40 and no more than 100.
int helpWidth();

}  // namespace genostat::common
