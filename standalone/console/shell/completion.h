// What may follow what is typed in genostat shell.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/line_editor.h"
#include "standalone/syntax/expectation.h"

namespace genostat::standalone {

// What there is to choose from.
struct CompletionSources {
  std::vector<std::string_view> commands;
  std::vector<std::string> variables;  // of the active dataset
  std::vector<std::string> datasets;
  std::vector<std::string> jobs;  // that can be cancelled
  // What may follow a text of command syntax.
  std::function<Expectation(const std::string&)> expectedAfter;
};

// `before` are the lines of the command that has begun, each with its line feed, if one has; `line` is the
// one that is typed. Looks at folders for names of files.
platform::Completion completeShellLine(const CompletionSources& sources, const std::string& before,
                                       std::string_view line, std::size_t cursor);

// What there is to choose from, as whole lines of at most so many columns where that is possible, read
// downwards: paths by their last part; of very many candidates the first, and how many more there are.
// Printable UTF-8.
std::string candidateList(const std::vector<std::string>& candidates, int columns);

}  // namespace genostat::standalone
