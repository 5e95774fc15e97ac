#include "tests/support/run_program.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/path_text.h"

namespace genostat::test {

namespace fs = std::filesystem;

namespace {

constexpr bool kWindows = fs::path::preferred_separator == '\\';
constexpr int kWindowsNotStarted = 9009;

std::string quoted(const std::string& text) {
  if (kWindows) return '"' + text + '"';
  std::string result = "'";
  for (const char c : text) {
    result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return result + "'";
}

std::string quoted(fs::path path) {
  return quoted(platform::pathToUtf8(path.make_preferred()));
}

}  // namespace

ProgramResult runProgram(const ProgramCall& call) {
  const fs::path in = call.folder / ".in";
  const fs::path out = call.folder / ".out";
  const fs::path err = call.folder / ".err";
  writeWholeFile(in, call.input);
  std::string line = (kWindows ? "cd /d " : "cd ") + quoted(call.folder) + " && ";
  // Texts are compared in English, whatever the machine speaks.
  std::map<std::string, std::string> environment = {{"LANGUAGE", "en"}};
  for (const auto& [name, value] : call.environment) {
    environment[name] = value;
  }
  for (const auto& [name, value] : environment) {
    line += kWindows ? "set " + name + "=" + value + "&& " : "export " + name + "=" + quoted(value) + " && ";
  }
  line += quoted(call.program);
  for (const std::string& argument : call.arguments) {
    line += ' ' + quoted(argument);
  }
  line += " <" + quoted(in) + " >" + quoted(out) + " 2>" + quoted(err);
  const std::string command = platform::pathToNarrow(platform::pathFromUtf8(line));
  int status = std::system(command.c_str());
  // On a loaded machine Wine's shell now and then fails to start a program that is there.
  if (kWindows && status == kWindowsNotStarted) status = std::system(command.c_str());
  ProgramResult result{kWindows ? status : status >> 8, readWholeFile(out), readWholeFile(err)};
  std::erase(result.out, '\r');
  std::erase(result.err, '\r');
  return result;
}

std::string readWholeFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeWholeFile(const fs::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code missing;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
    const std::string name = platform::pathToUtf8(entry.path().filename());
    if (!name.starts_with('.')) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace genostat::test
