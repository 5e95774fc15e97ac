// Operating-system services of the programs `genostat` and `genostat-analysis`.
// The module uses none of these.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::platform {

// Text is UTF-8 everywhere inside our programs; paths are converted here, once.
std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string pathToUtf8(const std::filesystem::path& path);
// A path in the system's narrow encoding, for interfaces that take byte strings, and back.
std::string pathToNarrow(const std::filesystem::path& path);
std::filesystem::path pathFromNarrow(std::string_view narrow);

// The program's arguments as UTF-8, without the program's own name.
std::vector<std::string> commandLineArguments(int argc, const char* const* argv);

// Puts the standard streams into the state our programs expect: UTF-8 text, input taken and output given byte
// for byte. From then on a write that the system refuses, to them or to a file, fails without a signal.
void prepareStandardStreams();

// The folder of the running program, links resolved.
std::filesystem::path programFolder();

// A file name for dynamic libraries: ".dll" or ".so".
extern const char* const kLibrarySuffix;

// A dynamic library, kept loaded until the program ends.
class DynamicLibrary {
 public:
  // Null when it cannot be loaded; `error` then says why.
  static std::unique_ptr<DynamicLibrary> open(const std::filesystem::path& path, std::string& error);

  // Null when the library does not export the name.
  void* symbol(const char* name) const;

 private:
  explicit DynamicLibrary(void* handle) : handle_(handle) {}
  void* handle_;
};

// Calls `handler` on a thread of its own for each Ctrl-C (SIGINT, SIGTERM, SIGHUP; on Windows a console
// control event); calls may overlap. Install once, before other threads start.
void onInterrupt(std::function<void()> handler);

// Ends the program at once, without any clean-up.
[[noreturn]] void exitNow(int status);

// The terminal behind a standard stream, if it is one.
struct Terminal {
  bool isTerminal = false;
  int width = 80;   // columns; 80 where unknown
  int height = 24;  // rows; 24 where unknown
  bool isUtf8 = false;
  bool movesCursor = false;   // it follows escape sequences
  bool isForeground = false;  // the program's job may write to it without disturbing another
};
Terminal standardOutputTerminal();
Terminal standardErrorTerminal();

// A path in a variable of the environment; empty where there is none. Names are ASCII. Set before other
// threads start; processes started later inherit it.
std::filesystem::path environmentPath(const char* name);
void setEnvironmentPath(const char* name, const std::filesystem::path& value);

// The languages in which the system speaks to the user, the most wanted first: "de-DE". Empty where only
// variables of the environment tell.
std::vector<std::string> systemLanguages();

// The id of the running process.
int processId();

}  // namespace genostat::platform
