// Runs built programs as a user would: separate streams, an exit status, Ctrl-C.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace genostat::test {

struct ProgramCall {
  std::filesystem::path program;                   // absolute, without ".exe"
  std::vector<std::string> arguments;              // UTF-8; no quotes, no percent signs
  std::filesystem::path folder;                    // runs here; the streams are kept here in hidden files
  std::string input;                               // standard input
  std::map<std::string, std::string> environment;  // set beside the inherited one; simple values
};

struct ProgramResult {
  int status = -1;  // 128 plus the signal for a program that a signal ended
  std::string out;  // CR LF turned into LF
  std::string err;
};

ProgramResult runProgram(const ProgramCall& call);

enum class Signal { Interrupt, Quit, Kill };  // Ctrl-C, Ctrl-\, SIGKILL

// The same, with a signal each time `when` says so. It is asked every few milliseconds, with the
// number of signals sent so far. None where the system has no signals.
std::optional<ProgramResult> runAndSignal(const ProgramCall& call, Signal signal,
                                          const std::function<bool(int sent)>& when);

// The whole file, or an empty text.
std::string readWholeFile(const std::filesystem::path& file);
void writeWholeFile(const std::filesystem::path& file, const std::string& text);
// The names in a folder that are not hidden, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& folder);

}  // namespace genostat::test
