// A file that appears under its name whole or not at all.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace genostat::analysis {

// Written beside the target as "<target>.part" and moved to its name by commit(). Without a commit the
// destructor removes it. Every failure is thrown as std::runtime_error with the system's reason.
class OutputFile {
 public:
  explicit OutputFile(const std::filesystem::path& target);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  void write(std::string_view text);
  void commit();

 private:
  std::filesystem::path target_;
  std::filesystem::path part_;
  std::filebuf file_;
};

// Writes a whole file in the way of OutputFile.
void writeFile(const std::filesystem::path& target, std::string_view text);

}  // namespace genostat::analysis
