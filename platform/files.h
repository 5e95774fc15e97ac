// The questions about files that the module asks the operating system.
// Paths are byte strings in the system's narrow encoding and are passed on as they are.
#pragma once

#include <string>

namespace genostat::platform {

// The separator that joined paths get: a backslash on Windows, a slash elsewhere.
extern const char kPathSeparator;

enum class PathKind { Missing, File, Folder };

// What stands at `path`; Missing also when the system does not say.
PathKind queryPath(const std::string& path);

enum class InputProbe { Unreadable, Empty, HasData };

// Opens a file for reading, as an analysis would, and asks its size. `utf8Path` is UTF-8 on
// every system. A folder is Unreadable; a file whose size is not to be had counts as Empty.
InputProbe probeInputFile(const std::string& utf8Path);

}  // namespace genostat::platform
