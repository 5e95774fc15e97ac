#include "tests/recording_host/held_file.h"

namespace genostat::test {

// A file that is open without leave to delete it stays.
HeldFile::HeldFile(const std::filesystem::path& path) : open_(path) {}

HeldFile::~HeldFile() = default;

}  // namespace genostat::test
