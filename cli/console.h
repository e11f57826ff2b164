// The run as its user sees it: message boxes, faults in their place, questions, a progress bar.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/fault_report.h"
#include "cli/terminal.h"
#include "host/diagnostics.h"
#include "host/events.h"
#include "host/screen.h"

namespace tremvik::cli {

/// How questions are answered.
enum class Answers {
  kAsk,  ///< on the terminal; without one the answer is No
  kYes,
  kNo
};

/// A bar on standard error that shows how far a file was read. Does nothing where it is off.
class ProgressBar final : public Events {
 public:
  explicit ProgressBar(bool on, bool colour = false) : on_(on), colour_(colour) {}

  /// Begins a file of `lines` lines; `line` tells the line being read, its caller being the component.
  void Begin(int lines, std::function<int()> line);
  /// Takes the bar off the screen; the next event draws it again.
  void Clear();
  /// Ends the file: later events draw nothing.
  void End();
  [[nodiscard]] bool on() const { return on_; }

  void Progresso() override;
  void Fechar() override { End(); }

 private:
  void Draw(int percent, std::string_view step);

  bool on_;
  bool colour_;
  int lines_ = 0;
  int steps_ = 0;
  int drawn_ = -1;         ///< percent on the screen, -1 when there is no bar
  std::string_view step_;  ///< a literal, on the screen
  std::function<int()> line_;
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

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int) override {}
  void Inconsistencia(const FaultLocation& where) override { faults_.emplace_back(where); }
  void Duvida(const FaultLocation& where) override { faults_.emplace_back(where); }

 private:
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
};

}  // namespace tremvik::cli
