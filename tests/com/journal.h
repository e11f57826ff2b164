// What happens during a run, as JSON lines in the manner of the command line's --json.
#pragma once

#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/com/windows_api.h"

namespace tremvik::com_test {

/// One run: a thread has one at a time.
struct Run {
  std::wstring path;  ///< where its lines go; empty: nowhere
  int answer = 0;     ///< to boxes that ask, IDYES or IDNO
  std::string fault;  ///< what the pretended host does wrong, see test_host.cpp; mostly nothing
};

/// The journals of this process, of one run for each thread. Safe to use from several threads.
class Journal {
 public:
  static Journal& Of();

  /// Starts a run of the calling thread.
  void Start(const Run& run);
  /// The run of `thread` (default: the calling one).
  Run Current(DWORD thread = GetCurrentThreadId());
  /// Writes one object to a thread's run; the values of its members are already JSON.
  void Write(const std::vector<std::pair<std::string_view, std::string>>& members,
             DWORD thread = GetCurrentThreadId());

 private:
  std::mutex mutex_;
  std::map<DWORD, Run> runs_;
};

/// `text` (UTF-8) as a JSON string.
[[nodiscard]] std::string Quoted(std::string_view text);

/// Begins or ends the answering of every message box of this process, which goes to the journal too.
void AnswerBoxes(bool answer);

}  // namespace tremvik::com_test
