// The run as its user sees it: message boxes, faults in their place, questions.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/fault_report.h"
#include "cli/progress_bar.h"
#include "cli/terminal.h"
#include "examination/findings.h"
#include "host/diagnostics.h"
#include "host/screen.h"

namespace tremvik::cli {

/// How questions are answered.
enum class Answers {
  kAsk,  ///< on the terminal; without one the answer is No
  kYes,
  kNo
};

/// Shows the boxes of one file after another and answers them.
class Console final : public Screen, public Diagnostics {
 public:
  struct Options {
    Answers responder = Answers::kAsk;
    bool interactive = false;  ///< there is a terminal and nobody else uses it
    bool many = false;         ///< one of several files: nothing is asked
    bool show = true;          ///< messages go to `out`; without it only questions appear, on standard error
    bool framed = false;
    bool colour = false;
    std::size_t width = 100;
  };
  /// `out` receives the messages; `err` the notes about the run itself.
  Console(const Options& options, Output& out, Output& err, ProgressBar& bar)
      : options_(options), out_(out), err_(err), bar_(bar) {}

  /// Begins the file at `path`.
  void Begin(std::string path);
  /// Ends the file; its last message, where it asked nothing, only appears now, and only if `shows_last`.
  void End(bool shows_last);
  /// The rules that were told since `Begin`.
  [[nodiscard]] std::vector<Finding> TakeFindings() { return std::move(told_); }

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int) override {}
  void Inconsistencia(const FaultLocation& where) override { Note(where, FindingKind::kFault); }
  void Duvida(const FaultLocation& where) override { Note(where, FindingKind::kQuestion); }

 private:
  void Note(const FaultLocation& where, FindingKind tipo);
  [[nodiscard]] std::string Rendered(std::string_view text, int style, std::string_view title) const;
  int Ask();
  int AskUser(Output& to);

  Options options_;
  Output& out_;
  Output& err_;
  ProgressBar& bar_;
  std::string path_;
  std::string held_;           ///< a message that may be the last one
  std::vector<Fault> faults_;  ///< told, not yet shown
  std::vector<Finding> told_;  ///< rule and kind of each
};

}  // namespace tremvik::cli
