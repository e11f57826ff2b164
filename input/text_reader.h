#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "input/input_buffer.h"

namespace tremvik {

/// The part of `text` before its first line end, a bare CR or LF included.
[[nodiscard]] inline std::string_view UpToLineEnd(std::string_view text) {
  const std::string_view up_to_feed = text.substr(0, text.find('\n'));
  return up_to_feed.substr(0, up_to_feed.find('\r'));
}

/// Reads a file as text: a line ends at CR LF, at a bare LF or at a bare CR, and the end of the file ends the
/// last one.
class TextReader {
 public:
  /// What the length pass wants of a line; its length may exceed any memory, so the text itself is not kept.
  struct Line {
    std::string code;        ///< its first two characters, or fewer where it is shorter
    std::size_t length = 0;  ///< in characters, without the line end
  };

  TextReader(Files& files, int number, std::string_view path) : input_(files, number, path) {}

  [[nodiscard]] bool AtEnd();
  /// Reads one line into `line`.
  void ReadLine(Line& line);
  /// What lies read ahead, as it stands in the file: nothing at its end, and within a line end.
  [[nodiscard]] std::string_view Ahead() { return owes_line_feed_ ? std::string_view{} : input_.Ahead(); }
  /// The next `length` characters and their CR LF, where they are just that and lie ahead in one piece; else
  /// nothing is read. Valid until the next read.
  [[nodiscard]] std::string_view TakeLine(std::size_t length);
  /// Appends the next `count` characters to `text`, any line end standing for the two characters CR LF; fewer
  /// where the file ends.
  void ReadCharacters(std::size_t count, std::string& text);
  void Close() { input_.Close(); }

 private:
  void SkipLineEnd();

  InputBuffer input_;
  bool owes_line_feed_ = false;  // a line end was delivered up to its CR only
};

}  // namespace tremvik
