#include "platform/program.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

#include "platform/interrupts.h"

namespace genostat::platform {

const char* const kLibrarySuffix = ".so";

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(utf8);
}
std::string pathToUtf8(const std::filesystem::path& path) {
  return path.string();
}
std::string pathToNarrow(const std::filesystem::path& path) {
  return path.string();
}
std::filesystem::path pathFromNarrow(std::string_view narrow) {
  return std::filesystem::path(narrow);
}

std::vector<std::string> commandLineArguments(int argc, const char* const* argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void prepareStandardStreams() {
  // A standard stream that was closed must not become the next file that is opened. What is opened
  // here in its place fails like the closed stream did.
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0 && errno == EBADF)
      open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
  // A reader that went away, or a limit on the size of files, shows up as a failed write, not as a signal.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

std::filesystem::path programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::unique_ptr<DynamicLibrary> DynamicLibrary::open(const std::filesystem::path& path, std::string& error) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* text = dlerror();
    error = text != nullptr ? text : "unknown reason";
    return nullptr;
  }
  return std::unique_ptr<DynamicLibrary>(new DynamicLibrary(handle));
}

void* DynamicLibrary::symbol(const char* name) const {
  return dlsym(handle_, name);
}

void onInterrupt(std::function<void()> handler) {
  onEachInterrupt([handler = std::move(handler)](Interrupt) { handler(); });
}

void exitNow(int status) {
  _exit(status);
}

namespace {

Terminal terminalBehind(int stream) {
  Terminal terminal;
  terminal.isTerminal = isatty(stream) == 1;
  winsize size = {};
  if (terminal.isTerminal && ioctl(stream, TIOCGWINSZ, &size) == 0) {
    if (size.ws_col > 0) terminal.width = size.ws_col;
    if (size.ws_row > 0) terminal.height = size.ws_row;
  }
  if (terminal.isTerminal) {
    const char* kind = std::getenv("TERM");
    terminal.movesCursor = kind != nullptr && *kind != '\0' && std::strcmp(kind, "dumb") != 0;
    // -1 for another session's terminal, 0 for a group outside of the container: nobody to be disturbed.
    const pid_t foreground = tcgetpgrp(stream);
    terminal.isForeground = foreground <= 0 || foreground == getpgrp();
  }
  locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale != nullptr) {
    terminal.isUtf8 = std::strcmp(nl_langinfo_l(CODESET, locale), "UTF-8") == 0;
    freelocale(locale);
  }
  return terminal;
}

}  // namespace

Terminal standardOutputTerminal() {
  return terminalBehind(STDOUT_FILENO);
}
Terminal standardErrorTerminal() {
  return terminalBehind(STDERR_FILENO);
}

std::filesystem::path environmentPath(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::filesystem::path() : std::filesystem::path(value);
}

void setEnvironmentPath(const char* name, const std::filesystem::path& value) {
  setenv(name, value.c_str(), 1);
}

std::vector<std::string> systemLanguages() {
  return {};
}

int processId() {
  return getpid();
}

}  // namespace genostat::platform
