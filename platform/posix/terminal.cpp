#include "platform/terminal.h"

#include <fcntl.h>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace genostat::platform {

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

void keepStandardOutput() {
  const int kept = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  std::FILE* stream = kept < 0 ? nullptr : fdopen(kept, "w");
  if (stream == nullptr || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) return;
  stdout = stream;
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
  return terminalBehind(fileno(stdout));
}
Terminal standardErrorTerminal() {
  return terminalBehind(STDERR_FILENO);
}

}  // namespace genostat::platform
