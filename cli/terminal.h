// What the standard streams are, and writing to them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tremvik::cli {

/// What the user's streams can show, asked once at the start of the program.
struct Terminal {
  bool out = false;     ///< standard output is a terminal
  bool err = false;     ///< standard error is a terminal
  bool in = false;      ///< standard input is a terminal
  bool colour = false;  ///< standard output takes colours
  bool bar = false;     ///< standard error takes a bar that is redrawn
  std::size_t width = 100;

  /// Looks at the streams and at NO_COLOR, TERM and COLUMNS.
  static Terminal Detect();
};

/// The width of the terminal behind a descriptor in cells; 0 where there is none.
[[nodiscard]] std::size_t ColumnsOf(int descriptor);

/// A system error number in Portuguese words.
[[nodiscard]] std::string SystemError(int error);

/// Collects text and hands it to a file descriptor in large pieces; without one it only collects. A reader
/// that went away, or a full disk, does not raise: `failed` tells.
class Output {
 public:
  /// Lines wider than `width` cells are broken between words; 0 leaves them as they are.
  explicit Output(int descriptor = -1, std::size_t width = 0) : descriptor_(descriptor), width_(width) {}
  ~Output() { Flush(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void Write(std::string_view text);
  void Flush();
  /// What was collected and not yet written.
  [[nodiscard]] std::string Take();
  [[nodiscard]] bool failed() const { return error_ != 0; }
  /// The system's error number of the failure, 0 without one.
  [[nodiscard]] int error() const { return error_; }

 private:
  int descriptor_;
  std::size_t width_;
  int error_ = 0;
  std::string pending_;
};

}  // namespace tremvik::cli
