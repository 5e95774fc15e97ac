// The program's command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace genostat::console {

enum class OutputFormat { Text, Json, Html };

// genostat run. Paths are as given, in UTF-8; empty ones were not given.
struct RunOptions {
  std::string file;  // "-": standard input
  std::string temporaryFolder;
  std::string homeFolder;
  std::string stringsFolder;
  bool commandLineMode = false;
  std::string eventsFile;
  std::string csvFolder;
  OutputFormat output = OutputFormat::Text;
  std::string outputFile;  // gets what else goes to standard output
  std::string htmlFile;    // gets a report beside that
};

// Nothing to run: a text to show, help or an error, and the exit status.
struct Answer {
  std::string text;
  int status = 0;
};

// `arguments` are UTF-8, without the program's name.
std::variant<RunOptions, Answer> parseArguments(std::vector<std::string> arguments);

}  // namespace genostat::console
