#include "analysis/request/samples.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <system_error>
#include <unordered_map>

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

Sample sampleOf(const std::string& path, const SampleOptions& options) {
  try {
    return sampleOfFile(path, options);
  } catch (const Failure& failure) {
    if (!options.keepBad) throw;
    Sample sample = makeSample(platform::pathFromUtf8(path), path);
    sample.failure = std::make_shared<const Failure>(failure);
    return sample;
  }
}

// Those that are not hidden, in byte order of their names.
std::vector<fs::path> foldersIn(const fs::path& folder) {
  std::vector<fs::path> folders;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code unknown;
    const bool isFolder = fs::is_directory(entry->symlink_status(unknown));
    if (isFolder && !platform::pathToUtf8(entry->path().filename()).starts_with('.'))
      folders.push_back(entry->path());
  }
  std::ranges::sort(folders, {}, [](const fs::path& one) { return platform::pathToUtf8(one); });
  return folders;
}

void addSamplesIn(const fs::path& folder, const std::string& givenPath, const SampleOptions& options,
                  std::vector<Sample>& samples) {
  std::error_code error;
  std::vector<fs::path> paths;
  for (const std::string& name : common::fastqNamesIn(folder, error)) {
    paths.push_back(folder / platform::pathFromUtf8(name));
  }
  if (error) {
    const bool denied = error == std::errc::permission_denied;
    refuse(denied ? ExitCode::PermissionDenied : ExitCode::General, givenPath, givenPath, error.message());
  }
  std::vector<fs::path> folders;
  if (options.recursive) folders = foldersIn(folder);
  auto next = folders.begin();
  const auto addFoldersBefore = [&](const fs::path* path) {
    for (; next != folders.end() && (path == nullptr || next->filename() < path->filename()); ++next) {
      addSamplesIn(*next, platform::pathToUtf8(*next), options, samples);
    }
  };
  for (const fs::path& path : paths) {
    addFoldersBefore(&path);
    samples.push_back(sampleOf(platform::pathToUtf8(path), options));
  }
  addFoldersBefore(nullptr);
}

// People may name folders, too, and get a guess at what they meant.
void refuseMissing(const std::string& path) {
  std::error_code unknown;
  if (fs::status(platform::pathFromUtf8(path), unknown).type() == fs::file_type::not_found)
    refuse(ExitCode::FileNotFound, path, path, common::nothingThere(path, common::Expected::FileOrFolder));
}

}  // namespace

Sample sampleOfFile(const std::string& path, const SampleOptions& options) {
  Sample sample = makeSample(platform::pathFromUtf8(path), path);
  const fs::file_status status = statusOf(sample.path, path, "file");
  if (fs::is_directory(status)) {
    // Without the separator that its path may end with.
    const fs::path folderName = (sample.path / "").parent_path().filename();
    refuse(ExitCode::InvalidFastq, platform::pathToUtf8(folderName), path, "it is a folder");
  }
  sample.isStream = fs::is_fifo(status) || fs::is_character_file(status);
  // Opening a pipe that nobody writes to would wait for ever.
  if (!fs::is_regular_file(status) && !(sample.isStream && options.forPeople)) {
    refuse(ExitCode::InvalidFastq, sample.fileName, path, "it is no regular file");
  }
  return sample;
}

std::vector<Sample> samplesOfFolder(const std::string& folder, const SampleOptions& options) {
  const fs::path path = platform::pathFromUtf8(folder);
  if (folder.empty()) throw Failure(ExitCode::NoFastqFiles, {}, "no FASTQ files and no folder were given");
  if (!fs::is_directory(statusOf(path, folder, "folder"))) {
    refuse(ExitCode::FileNotFound, folder, folder, "it is no folder");
  }
  std::vector<Sample> samples;
  addSamplesIn(path, folder, options, samples);
  if (samples.empty()) {
    const bool hasFolders = !options.recursive && options.forPeople && !foldersIn(path).empty();
    refuse(ExitCode::NoFastqFiles, folder, folder,
           std::string("no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder") +
               (hasFolders ? "; --recursive takes those of the folders in it" : ""));
  }
  return samples;
}

std::vector<Sample> samplesOfFiles(const std::vector<std::string>& paths, const SampleOptions& options) {
  if (paths.empty()) throw Failure(ExitCode::NoFastqFiles, {}, "the list of FASTQ files is empty");
  std::vector<Sample> samples;
  std::ranges::transform(paths, std::back_inserter(samples),
                         [&](const std::string& path) { return sampleOf(path, options); });
  return samples;
}

std::vector<Sample> samplesOfPaths(const std::vector<std::string>& paths, const SampleOptions& options) {
  std::vector<Sample> samples;
  for (const std::string& path : paths) {
    std::error_code unknown;
    if (path == kStandardStream) {
      if (std::any_of(samples.begin(), samples.end(), [](const Sample& s) { return s.path.empty(); })) {
        throw Failure(ExitCode::WrongArguments, path, "standard input can be read only once");
      }
      samples.push_back({{}, "standard input", options.inputName, options.inputName, true});
    } else if (fs::is_directory(platform::pathFromUtf8(path), unknown)) {
      std::vector<Sample> found = samplesOfFolder(path, options);
      std::move(found.begin(), found.end(), std::back_inserter(samples));
    } else {
      if (!options.keepBad) refuseMissing(path);
      samples.push_back(sampleOf(path, options));
    }
  }
  return samples;
}

void tellApart(std::vector<Sample>& samples) {
  // Each round puts one folder more before those that are still equal.
  struct Named {
    Sample* sample;
    fs::path rest;  // of the folders
  };
  std::unordered_map<std::string_view, int> uses;
  for (const Sample& sample : samples) {
    ++uses[sample.name];
  }
  std::vector<Named> open;
  for (Sample& sample : samples) {
    if (uses[sample.name] == 1) continue;
    std::error_code unknown;
    open.push_back({&sample, fs::absolute(sample.path, unknown).lexically_normal().parent_path()});
  }
  while (!open.empty()) {
    std::map<std::string, std::vector<Named>> equals;
    for (Named& one : open) {
      equals[one.sample->name].push_back(std::move(one));
    }
    open.clear();
    for (auto& equal : equals) {
      std::vector<Named>& group = equal.second;
      const bool differ =
          std::ranges::any_of(group, [&](const Named& one) { return one.rest != group.front().rest; });
      for (Named& one : group) {
        if (!differ || !one.rest.has_filename()) continue;
        one.sample->name = platform::pathToUtf8(one.rest.filename()) + '/' + one.sample->name;
        one.rest = one.rest.parent_path();
        open.push_back(std::move(one));
      }
    }
  }
}

}  // namespace genostat::analysis
