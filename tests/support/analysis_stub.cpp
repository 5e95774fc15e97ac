// Stands where the analysis would: started by a launcher as `analysis_stub SCRIPT PAYLOAD`, it does what
// the file "plan.txt" in the script's folder says, one step per line:
//   record           appends its arguments and the parameter document to "arguments.txt"
//   wait NAME        waits until a file of that name exists in the folder
//   csv TEXT         writes TEXT (with \n for line feeds) to the result path
//   shell COMMAND    runs COMMAND with the result path as its last argument
//   part             begins a part file in the folder and keeps it
//   child            starts a copy of itself that only beats, with a child of its own
//   beat             writes to "beat_<process id>" every 10 ms, for a minute at most
//   exit CODE        ends with this exit code
// Started as `analysis_stub FOLDER named` or `unnamed`, it is a host that is killed once `analysis_stub
// FOLDER watch`, which it starts, is under way. That one creates "gone" when it learns of it.
#include <rapidjson/document.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "common/files/part_file.h"
#include "platform/lifeline.h"
#include "platform/path_text.h"
#include "platform/process.h"
#include "platform/running_program.h"

namespace {

namespace fs = std::filesystem;
namespace platform = genostat::platform;

std::string decodeBase64(const std::string& text) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned accumulator = 0;
  int bits = 0;
  for (const char c : text.substr(0, text.find('='))) {
    accumulator = (accumulator << 6) | static_cast<unsigned>(alphabet.find(c));
    bits += 6;
    if (bits >= 8) bytes += static_cast<char>((accumulator >> (bits -= 8)) & 0xFF);
  }
  return bytes;
}

std::string resultPath(const std::string& document) {
  rapidjson::Document json;
  json.Parse(document.c_str());
  return json["fastq_data"][0]["CSV_Path"].GetString();
}

[[noreturn]] void beat(const fs::path& folder) {
  std::ofstream file(folder / ("beat_" + std::to_string(platform::processId())));
  for (int i = 0; i < 6000; ++i) {
    file << '.' << std::flush;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  std::exit(99);
}

// Starts `program FOLDER ROLE`. With a number as its role it beats, with so many generations below it.
void startCopy(const std::string& program, const fs::path& folder, const std::string& role) {
  platform::LaunchCommand command;
  command.launcher = program;
  command.script = platform::pathToNarrow(folder);
  command.payload = role;
  const std::string line = "\"" + program + "\" \"" + command.script + "\" \"" + command.payload + "\"";
  command.commandLine.assign(line.begin(), line.end());
  // Left to itself: whoever ends the tree has to find it.
  if (!platform::ChildProcess::start(command)) std::cerr << "analysis_stub: no child\n";
}

int watchParent(const fs::path& folder) {
  platform::onParentGone([folder] { std::ofstream(folder / "gone"); });
  std::ofstream(folder / "watching");
  for (int i = 0; i < 6000 && !fs::exists(folder / "gone"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return 0;
}

[[noreturn]] void playKilledHost(const std::string& program, const fs::path& folder, bool named) {
  if (named) platform::nameAsParent();
  startCopy(program, folder, "watch");
  for (int i = 0; i < 3000 && !fs::exists(folder / "watching"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  platform::exitNow(fs::exists(folder / "gone") ? 1 : 0);
}

int runPlan(const std::string& program, const std::vector<std::string>& arguments) {
  const fs::path folder = platform::pathFromNarrow(arguments.at(0)).parent_path();
  const std::string document = decodeBase64(arguments.at(1));
  std::ifstream plan(folder / "plan.txt");
  std::optional<platform::LockedFile> part;
  for (std::string line; std::getline(plan, line);) {
    const std::string step = line.substr(0, line.find(' '));
    std::string value = step.size() < line.size() ? line.substr(step.size() + 1) : "";
    if (step == "record") {
      std::ofstream(folder / "arguments.txt", std::ios::app | std::ios::binary)
          << arguments.size() << '|' << arguments[0] << '|' << arguments[1] << '|' << document << '\n';
    } else if (step == "wait") {
      for (int i = 0; i < 6000 && !fs::exists(folder / value); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
      }
    } else if (step == "csv") {
      std::ofstream csv(platform::pathFromNarrow(resultPath(document)), std::ios::binary);
      for (std::size_t end; (end = value.find("\\n")) != std::string::npos; value.erase(0, end + 2)) {
        csv << value.substr(0, end) << '\n';
      }
      csv << value;
    } else if (step == "shell") {
      if (std::system((value + " \"" + resultPath(document) + "\"").c_str()) != 0) return 98;
    } else if (step == "part") {
      part.emplace(genostat::common::createPart(folder)).write("half");
    } else if (step == "child") {
      startCopy(program, folder, "1");
    } else if (step == "beat") {
      beat(folder);
    } else if (step == "exit") {
      return std::stoi(value);
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const std::string program = argv[0];
  const std::string role = arguments.at(1);
  const fs::path folder = platform::pathFromNarrow(arguments[0]);
  if (role == "watch") return watchParent(folder);
  if (role == "named" || role == "unnamed") playKilledHost(program, folder, role == "named");
  if (role.size() == 1) {
    const int depth = std::stoi(role);
    if (depth > 0) startCopy(program, folder, std::to_string(depth - 1));
    beat(folder);
  }
  return runPlan(program, arguments);
}
