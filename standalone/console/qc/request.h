// What genostat qc is asked for, checked before anything runs, and the command for it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/console/options.h"

namespace genostat::standalone {

// The message is all that is to be shown, several lines maybe.
struct QcRequestError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A file that the job is not asked to measure.
struct QcLeftOut {
  std::string file;    // UTF-8
  std::string reason;  // why it cannot be read; none for an empty file
};

struct QcRequest {
  std::vector<std::string> files;  // UTF-8, as given or below the folders given
  std::string folder;              // the only input, if it is one
  std::vector<QcLeftOut> leftOut;
  std::string adapter;  // NONE, ILLUMINA, NEXTERA or CUSTOM(sequence)
  std::string name;
  // Columns in their own spelling; an analysis without any is not asked for.
  std::vector<std::string> descriptives;
  std::vector<std::string> frequencies;
  std::vector<std::string> correlations;
  std::string dependent;
  std::vector<std::string> predictors;
};

// Looks at the files and folders. Throws QcRequestError.
QcRequest checkQcOptions(const QcOptions& options);

// The GENOSTAT command for a checked request, as a person would write it: one file a line, lists wrapped.
// Ends with a line feed.
std::string qcCommand(const QcRequest& request, const QcOptions& options);

enum class Wanted { Numbers, Any };
// The columns that a list names, each once; ALL: those that are wanted. `option` is what the error calls the
// text. Throws QcRequestError, which shows the place.
std::vector<std::string> parseColumnList(std::string_view option, const std::string& text, Wanted wanted);

struct QcFormula {
  std::string dependent;
  std::vector<std::string> predictors;
};
// "Y ~ A + B". Throws as above.
QcFormula parseFormula(std::string_view option, const std::string& text);

}  // namespace genostat::standalone
