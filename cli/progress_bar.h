// Bars on standard error that show how far a run has come.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "host/events.h"

namespace tremvik::cli {

/// A bar that is redrawn where it stands. Does nothing where it is off.
class Bar {
 public:
  explicit Bar(bool on, bool colour = false) : on_(on), colour_(colour) {}

  /// Draws what is not on the screen already; a negative `percent` stands for an unknown whole.
  void Draw(int percent, std::string_view words);
  /// Takes the bar off the screen.
  void Clear();
  [[nodiscard]] bool on() const { return on_; }

 private:
  bool on_;
  bool colour_;
  bool drawn_ = false;
  int percent_ = 0;
  std::string words_;
};

/// How far the component has read a file.
class ProgressBar final : public Events {
 public:
  explicit ProgressBar(bool on, bool colour = false) : bar_(on, colour) {}

  /// Begins a file of `lines` lines; `line` tells the line being read, its caller being the component.
  void Begin(int lines, std::function<int()> line);
  /// Takes the bar off the screen; the next event draws it again.
  void Clear() { bar_.Clear(); }
  /// Ends the file: later events draw nothing.
  void End();
  [[nodiscard]] bool on() const { return bar_.on(); }

  void Progresso() override;
  void Fechar() override { End(); }

 private:
  Bar bar_;
  int lines_ = 0;
  int steps_ = 0;
  std::function<int()> line_;
};

/// How many files are done.
class FilesBar {
 public:
  /// `total` is the number of files, 0 where it is not known.
  FilesBar(bool on, bool colour, std::size_t total) : bar_(on, colour), total_(total) {}

  /// Takes the bar off the screen, so that something else can be written.
  void Clear() { bar_.Clear(); }
  /// One more file is done. Draws a few times a second at most, but where the bar was cleared.
  void Step();
  /// Part of the only file is done.
  void Part(std::size_t done, std::size_t total);

 private:
  Bar bar_;
  std::size_t total_;
  std::size_t done_ = 0;
  std::chrono::steady_clock::time_point drawn_;
};

}  // namespace tremvik::cli
