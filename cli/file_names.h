// The names of the files to validate: those of the command line, with standard input in place of "-".
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tremvik::cli {

/// Gives one name after the other. Names on standard input are read as they are asked for, so a producer may
/// still be writing; empty ones are skipped. Not thread-safe.
class FileNames {
 public:
  /// `separator` parts the names on standard input: '\n' (a CR before it belongs to the line end) or '\0'.
  FileNames(std::vector<std::string> arguments, char separator)
      : arguments_(std::move(arguments)), separator_(separator) {}

  /// The next name; nothing after the last, at a problem and when the program is told to end.
  std::optional<std::string> Next();
  /// What is wrong with the list on standard input, as a sentence; empty when nothing is.
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  std::optional<std::string> NextOfInput();
  std::optional<std::string> Checked(std::string name);
  bool Fill();

  std::vector<std::string> arguments_;
  char separator_;
  std::size_t next_ = 0;
  bool reading_input_ = false;
  bool named_ = false;        ///< standard input held a name
  std::string pending_;       ///< read and not yet given
  std::size_t searched_ = 0;  ///< of `pending_`, known to hold no separator
  std::string problem_;
};

}  // namespace tremvik::cli
