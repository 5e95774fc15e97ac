// Part files: files on their way, written under a passing name and then moved to their own in one step.
//
// The passing name is "<host>-<process>-<number>.genostat-part". Whoever writes it keeps it locked, so any
// later run on the same computer can see which ones nobody will finish. Where folders are shared by
// computers, locks may be known only to the one that has them: there another one's files count as given up
// after a day.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/locked_file.h"

namespace genostat::common {

using platform::LockedFile;

// This computer's name, in characters that every file system takes: for names of files and folders whose
// locks no other computer may see.
std::string safeHostName();

// Creates a part file in a folder; an empty path is the current one. Failures as in LockedFile.
LockedFile createPart(const std::filesystem::path& folder,
                      LockedFile::FolderLink link = LockedFile::FolderLink::Follow);

// Makes sure that a file could be written in this folder or, when it is missing, where it would be made.
// Throws as above.
void tryFolder(const std::filesystem::path& folder);

using SeePath = std::function<void(const std::filesystem::path&)>;

// Removes the part files in a folder whose writers are no longer alive; `others` gets each other path there.
// Does what it can and reports no failure.
void removeAbandonedParts(const std::filesystem::path& folder, const SeePath& others = {});

// The same, but only for the first time that the process asks for this folder: a folder that many share may
// be large. Any thread.
void removeAbandonedPartsOnce(const std::filesystem::path& folder, const SeePath& others = {});

}  // namespace genostat::common
