// The text files that hold the host's string tables.
//
// A table is a UTF-8 file of lines "key<TAB>text". Blank lines and lines that begin with `#` are
// skipped; a byte order mark and CR LF line ends are accepted. Of a key given twice the last
// text counts. GENOSTAT.txt holds the texts of the procedure GENOSTAT, global.txt those that all
// procedures share. The module looks up these keys:
//
//   Genomic_analysis_job                                    stem of automatic job names
//   Summary, Count, Samples, Variables                      the table "Summary"
//   Details, Message, Dataset, None, Valid:                 the table "Details"
//   fastQ file(s) detected., Error:, Generic Error.         its message
//   General error:, File not found:, Invalid JSON configuration, Invalid configuration,
//   Error processing FASTQ file, Missing Python dependencies:, Permission denied accessing,
//   No FASTQ files found to process in, Error writing output to, Invalid adapter sequence:,
//   Error in parallel processing, Insufficient memory while processing,
//   Invalid command line arguments, Unknown error occurred  why an analysis failed
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

struct StringTableFile {
  std::map<std::string, std::string> texts;
  std::vector<Diagnostic> warnings;  // lines without a tab, a file that cannot be read
};

// A missing file is an empty table.
StringTableFile readStringTable(const std::filesystem::path& file);

// The file of a procedure, of the shared texts or of the program's own.
std::filesystem::path stringTableFile(const std::filesystem::path& folder, std::string_view name);
inline constexpr std::string_view kGlobalTable = "global";
inline constexpr std::string_view kClientTable = "client";

}  // namespace genostat::standalone
