// A file that the system refuses to remove.
#pragma once

#include <filesystem>
#include <fstream>

namespace genostat::test {

// While it lives, neither this process nor any other user's can remove the file. What the process itself may
// do to files is reduced meanwhile.
class HeldFile {
 public:
  explicit HeldFile(const std::filesystem::path& path);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  std::filesystem::path folder_;
  std::ifstream open_;
};

}  // namespace genostat::test
