// The real command line, run as its user runs it.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace tremvik::test {

struct ProgramEnd {
  int status = -1;     ///< exit status; -1 when a signal ended it
  std::string output;  ///< both streams
};

/// Starts `tremvik` with `arguments`; its output goes to `descriptor`. `as_nobody`: without root's powers,
/// which no permission holds back.
[[nodiscard]] pid_t StartProgram(const std::vector<std::string>& arguments, int descriptor, bool as_nobody = false);
/// Its exit status, -1 when a signal ended it.
[[nodiscard]] int WaitFor(pid_t program);
/// Runs it to its end.
[[nodiscard]] ProgramEnd RunProgram(const std::vector<std::string>& arguments, bool as_nobody = false);
/// Runs it on a terminal; `meanwhile` is called when it asks something, which is then answered Yes.
[[nodiscard]] ProgramEnd RunOnTerminal(const std::vector<std::string>& arguments, const std::function<void()>& meanwhile);

}  // namespace tremvik::test
