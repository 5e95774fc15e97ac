// Text files of the user, read whole.
#pragma once

#include <filesystem>
#include <istream>
#include <string>

namespace genostat::standalone {

struct TextFile {
  std::string text;   // without a byte order mark
  std::string error;  // a sentence naming the file; empty on success
};

TextFile readTextFile(const std::filesystem::path& file);
// `name` is used in the error.
TextFile readTextStream(std::istream& stream, const std::string& name);

}  // namespace genostat::standalone
