// From paths to samples: one FASTQ file is one sample.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/request/failure.h"

namespace genostat::analysis {

// In place of a path: standard input, or standard output.
inline constexpr std::string_view kStandardStream = "-";

struct Sample {
  std::filesystem::path path;                // empty for standard input
  std::string givenPath;                     // UTF-8, as messages name it
  std::string fileName;                      // UTF-8, without folder
  std::string name;                          // the file name without its FASTQ ending
  bool isStream = false;                     // standard input or a pipe: can be read once, and may make wait
  std::shared_ptr<const Failure> failure{};  // where it is known that it cannot be read
};

struct SampleOptions {
  bool keepBad = false;    // a file that cannot be one of the samples becomes one that cannot be read
  bool forPeople = false;  // pipes can be samples, and messages name options
  bool recursive = false;  // folders stand for the folders in them as well; links to folders are not followed
  std::string inputName = "stdin";  // of the sample that comes from standard input
};

// One listed file, UTF-8. Throws a Failure when it is missing (FileNotFound), is hidden by
// permissions (PermissionDenied) or is not a regular file, nor a stream that is taken (InvalidFastq).
Sample sampleOfFile(const std::string& path, const SampleOptions& options = {});

// The files of a folder that are named like reads, in byte order of their names; those of a folder in it come
// in the place of its name. Throws a Failure: FileNotFound, PermissionDenied, NoFastqFiles.
std::vector<Sample> samplesOfFolder(const std::string& folder, const SampleOptions& options = {});

// Listed files, in order. Throws as sampleOfFile, and NoFastqFiles for an empty list.
std::vector<Sample> samplesOfFiles(const std::vector<std::string>& paths, const SampleOptions& options = {});

// Files, folders and "-" for standard input in any mix, in the order given. Throws as the functions
// above, and WrongArguments where standard input is named twice.
std::vector<Sample> samplesOfPaths(const std::vector<std::string>& paths, const SampleOptions& options = {});

// Puts as much of their folders before equal names as tells them apart: "lane1/reads", "lane2/reads". The
// same file given twice keeps its name.
void tellApart(std::vector<Sample>& samples);

}  // namespace genostat::analysis
