#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "tests/support/run_program.h"

namespace genostat::test {

namespace {

// In the child, between fork and exec: nothing that may take a lock.
[[noreturn]] void becomeProgram(const char* folder, const char* const* streams, char* const* arguments) {
  const int flags[] = {O_RDONLY, O_WRONLY | O_CREAT | O_TRUNC, O_WRONLY | O_CREAT | O_TRUNC};
  for (int i = 0; i < 3; ++i) {
    dup2(open(streams[i], flags[i], 0600), i);
  }
  if (chdir(folder) == 0) execv(arguments[0], arguments);
  _exit(127);
}

}  // namespace

std::optional<ProgramResult> runAndInterrupt(const ProgramCall& call,
                                             const std::function<bool(int sent)>& when) {
  const std::string in = call.folder / ".in";
  const std::string out = call.folder / ".out";
  const std::string err = call.folder / ".err";
  writeWholeFile(in, call.input);
  std::vector<std::string> texts = {call.program};
  texts.insert(texts.end(), call.arguments.begin(), call.arguments.end());
  std::vector<char*> arguments;
  for (std::string& text : texts) {
    arguments.push_back(text.data());
  }
  arguments.push_back(nullptr);
  const char* const streams[] = {in.c_str(), out.c_str(), err.c_str()};
  const pid_t child = fork();
  if (child == 0) becomeProgram(call.folder.c_str(), streams, arguments.data());

  int status = 0;
  for (int sent = 0; waitpid(child, &status, WNOHANG) == 0;) {
    if (when(sent)) {
      kill(child, SIGINT);
      ++sent;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return ProgramResult{code, readWholeFile(out), readWholeFile(err)};
}

}  // namespace genostat::test
