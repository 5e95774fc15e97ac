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
[[noreturn]] void becomeProgram(const char* folder, const char* const* streams, char* const* arguments,
                                char* const* environment) {
  const int flags[] = {O_RDONLY, O_WRONLY | O_CREAT | O_TRUNC, O_WRONLY | O_CREAT | O_TRUNC};
  for (int i = 0; i < 3; ++i) {
    dup2(open(streams[i], flags[i], 0600), i);
  }
  if (chdir(folder) == 0) execve(arguments[0], arguments, environment);
  _exit(127);
}

// As execve() takes texts.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> environmentOf(const ProgramCall& call) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    if (!call.environment.contains(text.substr(0, text.find('=')))) variables.push_back(text);
  }
  for (const auto& [name, value] : call.environment) {
    variables.push_back(name + "=" + value);
  }
  return variables;
}

}  // namespace

std::optional<ProgramResult> runAndSignal(const ProgramCall& call, Signal signal,
                                          const std::function<bool(int sent)>& when) {
  constexpr int kNumbers[] = {SIGINT, SIGQUIT, SIGKILL};
  const std::string in = call.folder / ".in";
  const std::string out = call.folder / ".out";
  const std::string err = call.folder / ".err";
  writeWholeFile(in, call.input);
  std::vector<std::string> texts = {call.program};
  texts.insert(texts.end(), call.arguments.begin(), call.arguments.end());
  const std::vector<char*> arguments = pointersTo(texts);
  std::vector<std::string> variables = environmentOf(call);
  const std::vector<char*> environment = pointersTo(variables);
  const char* const streams[] = {in.c_str(), out.c_str(), err.c_str()};
  const pid_t child = fork();
  if (child == 0) becomeProgram(call.folder.c_str(), streams, arguments.data(), environment.data());

  int status = 0;
  for (int sent = 0; waitpid(child, &status, WNOHANG) == 0;) {
    if (when(sent)) {
      kill(child, kNumbers[static_cast<int>(signal)]);
      ++sent;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return ProgramResult{code, readWholeFile(out), readWholeFile(err)};
}

}  // namespace genostat::test
