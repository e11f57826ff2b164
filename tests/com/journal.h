// What happens during one run, as JSON lines in the manner of the command line's --json.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tremvik::com_test {

/// The journal of this process. Safe to use from several threads.
class Journal {
 public:
  static Journal& Of();

  /// Starts the run whose lines go to the file at `path`; empty: nowhere.
  void Start(const std::wstring& path);
  /// Writes one object: "tipo" and the members, whose values are already JSON.
  void Write(std::string_view tipo, const std::vector<std::pair<std::string_view, std::string>>& members);
  /// The answer to boxes that ask, IDYES or IDNO.
  int answer() const { return answer_; }
  void set_answer(int answer) { answer_ = answer; }
  /// Whether Preparar makes the temporary database.
  bool prepares() const { return prepares_; }
  void set_prepares(bool prepares) { prepares_ = prepares; }

 private:
  std::mutex mutex_;
  std::wstring path_;
  int answer_ = 0;
  bool prepares_ = true;
};

/// `text` (UTF-8) as a JSON string.
[[nodiscard]] std::string Quoted(std::string_view text);
[[nodiscard]] std::string Truth(bool value);

/// Answers every message box of this process and writes it to the journal, until it dies.
class BoxWatcher {
 public:
  BoxWatcher();
  BoxWatcher(const BoxWatcher&) = delete;
  BoxWatcher& operator=(const BoxWatcher&) = delete;
  ~BoxWatcher();

 private:
  static unsigned long __stdcall Watch(void* self);

  void* stop_;
  void* thread_;
};

}  // namespace tremvik::com_test
