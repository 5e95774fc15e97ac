// Folders that only their owner enters.
#pragma once

#include <filesystem>

namespace genostat::platform {

// Creates one: on Posix for nobody but the user, on Windows for those whom the folder above lets in. False
// where something bears the name, even a link to nothing. Other failures are thrown as std::system_error.
bool createPrivateFolder(const std::filesystem::path& path);

// Whether there is a folder that this user could have created so; a link to one does not count.
bool isPrivateFolder(const std::filesystem::path& path);

}  // namespace genostat::platform
