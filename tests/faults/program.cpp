#include "tests/faults/program.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace tremvik::test {
namespace {

constexpr uid_t kNobody = 65534;

// Replaces this process; never returns.
[[noreturn]] void Become(const std::vector<std::string>& arguments, bool as_nobody) {
  // Opened before root's powers are given up: the build folder may be out of others' reach.
  const int program = open(TREMVIK_PROGRAM, O_RDONLY | O_CLOEXEC);
  if (as_nobody && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(126);
  std::vector<char*> argv{const_cast<char*>("tremvik")};  // NOLINT(*-const-cast): exec changes nothing
  for (const std::string& argument : arguments)
    argv.push_back(const_cast<char*>(argument.c_str()));  // NOLINT(*-const-cast)
  argv.push_back(nullptr);
  fexecve(program, argv.data(), environ);
  _exit(127);
}

std::string ReadAll(int descriptor, const std::function<bool(std::string_view)>& look = {}) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t got = 0; (got = read(descriptor, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(got));
    if (look) (void)look(text);
  }
  return text;
}

}  // namespace

pid_t StartProgram(const std::vector<std::string>& arguments, int descriptor, bool as_nobody) {
  const pid_t child = fork();
  if (child != 0) return child;
  dup2(descriptor, STDOUT_FILENO);
  dup2(descriptor, STDERR_FILENO);
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
  Become(arguments, as_nobody);
}

int WaitFor(pid_t program) {
  int status = 0;
  waitpid(program, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

ProgramEnd RunProgram(const std::vector<std::string>& arguments, bool as_nobody) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  const pid_t program = StartProgram(arguments, ends[1], as_nobody);
  close(ends[1]);
  ProgramEnd end;
  end.output = ReadAll(ends[0]);
  close(ends[0]);
  end.status = WaitFor(program);
  return end;
}

ProgramEnd RunOnTerminal(const std::vector<std::string>& arguments, const std::function<void()>& meanwhile) {
  int terminal = -1;
  const pid_t program = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (program == 0) Become(arguments, false);
  bool answered = false;
  ProgramEnd end;
  end.output = ReadAll(terminal, [&](std::string_view so_far) {
    if (answered || so_far.find("Deseja continuar") == std::string_view::npos) return false;
    answered = true;
    meanwhile();
    return write(terminal, "s\n", 2) == 2;
  });
  close(terminal);
  end.status = WaitFor(program);
  return end;
}

}  // namespace tremvik::test
