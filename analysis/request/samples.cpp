#include "analysis/request/samples.h"

#include <algorithm>
#include <iterator>
#include <system_error>

#include "analysis/request/failure.h"
#include "common/files/fastq_names.h"
#include "common/files/path_fault.h"
#include "platform/path_text.h"

namespace genostat::analysis {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(ExitCode code, const std::string& subject, const std::string& givenPath,
                         const std::string& reason) {
  throw Failure(code, subject, common::cannotRead(givenPath, reason));
}

// What stands at a path, links followed. `kind` is the word for messages: "file" or "folder".
fs::file_status statusOf(const fs::path& path, const std::string& givenPath, const std::string& kind) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) {
    refuse(ExitCode::FileNotFound, givenPath, givenPath, "no such " + kind);
  }
  if (error == std::errc::permission_denied) {
    refuse(ExitCode::PermissionDenied, givenPath, givenPath, error.message());
  }
  if (!fs::status_known(status)) {
    refuse(ExitCode::General, givenPath, givenPath, error.message());
  }
  return status;
}

Sample makeSample(fs::path path, std::string givenPath) {
  std::string fileName = platform::pathToUtf8(path.filename());
  std::string name = common::sampleName(fileName);
  return {std::move(path), std::move(givenPath), std::move(fileName), std::move(name), false};
}

Sample sampleOf(const std::string& path, OnBadFile onBadFile) {
  try {
    return sampleOfFile(path);
  } catch (const Failure& failure) {
    if (onBadFile == OnBadFile::Throw) throw;
    Sample sample = makeSample(platform::pathFromUtf8(path), path);
    sample.failure = std::make_shared<const Failure>(failure);
    return sample;
  }
}

// People may name folders, too, and get a guess at what they meant.
void refuseMissing(const std::string& path) {
  std::error_code unknown;
  if (fs::status(platform::pathFromUtf8(path), unknown).type() == fs::file_type::not_found)
    refuse(ExitCode::FileNotFound, path, path, common::nothingThere(path, common::Expected::FileOrFolder));
}

}  // namespace

Sample sampleOfFile(const std::string& path) {
  Sample sample = makeSample(platform::pathFromUtf8(path), path);
  const fs::file_status status = statusOf(sample.path, path, "file");
  if (fs::is_directory(status)) {
    // Without the separator that its path may end with.
    const fs::path folderName = (sample.path / "").parent_path().filename();
    refuse(ExitCode::InvalidFastq, platform::pathToUtf8(folderName), path, "it is a folder");
  }
  // Opening a pipe that nobody writes to would wait for ever.
  if (!fs::is_regular_file(status)) {
    refuse(ExitCode::InvalidFastq, sample.fileName, path, "it is no regular file");
  }
  return sample;
}

std::vector<Sample> samplesOfFolder(const std::string& folder, OnBadFile onBadFile) {
  const fs::path path = platform::pathFromUtf8(folder);
  if (folder.empty()) throw Failure(ExitCode::NoFastqFiles, {}, "no FASTQ files and no folder were given");
  if (!fs::is_directory(statusOf(path, folder, "folder"))) {
    refuse(ExitCode::FileNotFound, folder, folder, "it is no folder");
  }
  std::error_code error;
  const std::vector<std::string> names = common::fastqNamesIn(path, error);
  if (error) {
    const bool denied = error == std::errc::permission_denied;
    refuse(denied ? ExitCode::PermissionDenied : ExitCode::General, folder, folder, error.message());
  }
  if (names.empty()) {
    refuse(ExitCode::NoFastqFiles, folder, folder,
           "no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder");
  }
  std::vector<Sample> samples;
  samples.reserve(names.size());
  for (const std::string& name : names) {
    samples.push_back(sampleOf(platform::pathToUtf8(path / platform::pathFromUtf8(name)), onBadFile));
  }
  return samples;
}

std::vector<Sample> samplesOfFiles(const std::vector<std::string>& paths, OnBadFile onBadFile) {
  if (paths.empty()) throw Failure(ExitCode::NoFastqFiles, {}, "the list of FASTQ files is empty");
  std::vector<Sample> samples;
  std::ranges::transform(paths, std::back_inserter(samples),
                         [&](const std::string& path) { return sampleOf(path, onBadFile); });
  return samples;
}

std::vector<Sample> samplesOfPaths(const std::vector<std::string>& paths, OnBadFile onBadFile) {
  std::vector<Sample> samples;
  for (const std::string& path : paths) {
    std::error_code unknown;
    if (path == kStandardStream) {
      if (std::any_of(samples.begin(), samples.end(), [](const Sample& s) { return s.isStandardInput; })) {
        throw Failure(ExitCode::WrongArguments, path, "standard input can be read only once");
      }
      samples.push_back({{}, "standard input", "stdin", "stdin", true});
    } else if (fs::is_directory(platform::pathFromUtf8(path), unknown)) {
      std::vector<Sample> found = samplesOfFolder(path, onBadFile);
      std::move(found.begin(), found.end(), std::back_inserter(samples));
    } else {
      if (onBadFile == OnBadFile::Throw) refuseMissing(path);
      samples.push_back(sampleOf(path, onBadFile));
    }
  }
  return samples;
}

}  // namespace genostat::analysis
