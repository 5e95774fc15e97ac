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
  std::filesystem::path path;
  std::string givenPath;                     // UTF-8, as messages name it
  std::string fileName;                      // UTF-8, without folder
  std::string name;                          // the file name without its FASTQ ending
  bool isStandardInput = false;              // then there is no path
  std::shared_ptr<const Failure> failure{};  // where it is known that it cannot be read
};

// Whether a file that cannot be one of the samples ends the job, or becomes a sample that cannot be read.
enum class OnBadFile { Throw, Keep };

// One listed file, UTF-8. Throws a Failure when it is missing (FileNotFound), is hidden by
// permissions (PermissionDenied) or is not a regular file (InvalidFastq).
Sample sampleOfFile(const std::string& path);

// The files of a folder that are named like reads, in byte order of their names. Throws a Failure:
// FileNotFound, PermissionDenied, NoFastqFiles.
std::vector<Sample> samplesOfFolder(const std::string& folder, OnBadFile onBadFile = OnBadFile::Throw);

// Listed files, in order. Throws as sampleOfFile, and NoFastqFiles for an empty list.
std::vector<Sample> samplesOfFiles(const std::vector<std::string>& paths,
                                   OnBadFile onBadFile = OnBadFile::Throw);

// Files, folders and "-" for standard input in any mix, in the order given. Throws as the functions
// above, and WrongArguments where standard input is named twice.
std::vector<Sample> samplesOfPaths(const std::vector<std::string>& paths,
                                   OnBadFile onBadFile = OnBadFile::Throw);

}  // namespace genostat::analysis
