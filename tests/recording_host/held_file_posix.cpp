#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/recording_host/held_file.h"

namespace genostat::test {

namespace {
constexpr uid_t kNobody = 65534;
}

// The folder cannot be written; root, whom that does not stop, becomes somebody else.
HeldFile::HeldFile(const std::filesystem::path& path) : folder_(path.parent_path()) {
  using std::filesystem::perms;
  constexpr perms kWritable = perms::owner_write | perms::group_write | perms::others_write;
  std::filesystem::permissions(folder_, kWritable, std::filesystem::perm_options::remove);
  if (getuid() == 0 && seteuid(kNobody) != 0) throw std::runtime_error("seteuid");
}

HeldFile::~HeldFile() {
  if (getuid() == 0 && seteuid(0) != 0) std::abort();
  std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);
}

}  // namespace genostat::test
