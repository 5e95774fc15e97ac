// What the module does with files.
// Paths are byte strings in the system's narrow encoding and are passed on as they are.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace genostat::platform {

// The separator that joined paths get: a backslash on Windows, a slash elsewhere.
extern const char kPathSeparator;

// An existing entry that is not a folder. False also when the system does not say.
bool fileExists(const std::string& path);
// An existing folder.
bool directoryExists(const std::string& path);

// An existing file that holds bytes: no folder, pipe, device or socket. A link counts as what it names.
bool regularFileExists(const std::string& path);

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
// Opens a regular file for reading, byte by byte; null for anything else. Waits for nobody, as opening a pipe
// would, whatever takes the file's place meanwhile.
std::unique_ptr<std::FILE, CloseFile> openRegularFile(const std::string& path);

// Removes the file if there is one; a folder is left alone. False, with errno set, when it could not be
// removed.
inline bool removeIfExists(const std::string& path) {
  return !fileExists(path) || std::remove(path.c_str()) == 0;
}

enum class InputProbe { Unreadable, Empty, HasData };

// Opens a file for reading, as an analysis would, and asks its size. `utf8Path` is UTF-8 on
// every system. A folder is Unreadable; a file whose size is unknown counts as Empty.
InputProbe probeInputFile(const std::string& utf8Path);

}  // namespace genostat::platform
