// The program's command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "common/cli/command_line.h"

namespace genostat::standalone {

enum class OutputFormat { Text, Json, Html };

// genostat run. Paths are as given, in UTF-8; empty ones were not given.
struct RunOptions {
  std::string file;  // "-": standard input
  std::string temporaryFolder;
  std::string homeFolder;
  std::string stringsFolder;
  std::string language;  // has had its effect before the arguments were parsed
  bool commandLineMode = false;
  std::string eventsFile;
  std::string csvFolder;
  OutputFormat output = OutputFormat::Text;
  std::string outputFile;  // gets what else goes to standard output
  std::string htmlFile;    // gets a report beside that
};

// genostat qc, as given.
struct QcOptions {
  std::vector<std::string> inputs;  // files and folders
  std::string adapter;              // none, illumina, nextera or a sequence
  std::string name;                 // of the job
  std::string descriptives;         // names of columns
  bool skewness = false;
  bool kurtosis = false;
  std::string frequencies;  // names of columns
  int tiles = 0;            // 0: not asked for
  std::vector<double> percentiles;
  bool quartiles = false;
  bool histogram = false;
  std::string correlations;  // names of columns
  bool noPearson = false;
  bool spearman = false;
  bool kendall = false;
  bool oneTailed = false;
  std::string regression;  // "Y ~ A + B"
  std::string method;      // enter, stepwise, backward, forward
  double confidence = 0;   // per cent; 0: not asked for
  bool normalPlot = false;
  bool stopAtUnread = false;
  std::string csvFile;
  bool safeCsv = false;
  std::string fastqcFolder;
  bool printSyntax = false;
  RunOptions session;
};

// genostat shell.
struct ShellOptions {
  bool noHistory = false;
  RunOptions session;
};

// `arguments` are UTF-8, without the program's name.
std::variant<RunOptions, QcOptions, ShellOptions, common::Answer> parseArguments(
    std::vector<std::string> arguments);

}  // namespace genostat::standalone
