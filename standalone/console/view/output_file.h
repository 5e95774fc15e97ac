// A file that gets the results at the end of a run.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace genostat::standalone {

// It appears in one step: whoever looks sees the old file or the new one, never a half.
class OutputFile {
 public:
  // `name` is the path as the user gave it, in UTF-8. Throws std::runtime_error, a sentence for the user,
  // when no file can come to stand there: better now than when the work is done.
  explicit OutputFile(const std::string& name);

  // Throws std::runtime_error as above.
  void write(std::string_view text) const;

  bool isSameAs(const std::filesystem::path& other) const;

 private:
  [[noreturn]] void fail(const std::string& reason) const;

  std::string name_;
  std::filesystem::path
      target_;  // links resolved, so that the file behind a link is replaced and not the link
};

}  // namespace genostat::standalone
