// The names of the files to validate: those of the command line, with standard input in place of "-".
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tremvik::cli {

/// Gives one name after the other. Names on standard input are read as they are asked for, so a producer may
/// still be writing; they are parted by NUL characters or by line ends, as the first one met. Empty names are
/// skipped. Not thread-safe.
class FileNames {
 public:
  explicit FileNames(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

  /// The next name; nothing after the last.
  std::optional<std::string> Next();

 private:
  std::optional<std::string> NextOfInput();
  bool Fill();

  std::vector<std::string> arguments_;
  std::size_t next_ = 0;
  bool reading_input_ = false;
  char separator_ = '\0';
  bool separator_known_ = false;
  std::string pending_;
};

}  // namespace tremvik::cli
