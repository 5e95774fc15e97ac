#include "standalone/language/system_reason.h"

#include <algorithm>
#include <array>

#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

// As POSIX systems word them in English.
constexpr std::array<std::string_view, 15> kReasons = {marked("No such file or directory"),
                                                       marked("Permission denied"),
                                                       marked("Operation not permitted"),
                                                       marked("No space left on device"),
                                                       marked("Disk quota exceeded"),
                                                       marked("Read-only file system"),
                                                       marked("Is a directory"),
                                                       marked("Not a directory"),
                                                       marked("File exists"),
                                                       marked("File too large"),
                                                       marked("File name too long"),
                                                       marked("Too many open files"),
                                                       marked("Input/output error"),
                                                       marked("Broken pipe"),
                                                       marked("Bad file descriptor")};

}  // namespace

std::string translatedReason(std::string_view message) {
  const bool isKnown = std::find(kReasons.begin(), kReasons.end(), message) != kReasons.end();
  return isKnown ? translated(message) : std::string(message);
}

}  // namespace genostat::standalone
