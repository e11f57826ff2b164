// The names of the files to validate: those of the command line, with standard input in place of "-" and the
// files below it in place of a folder.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/folder_walk.h"

namespace tremvik::cli {

/// Gives one name after the other. Names on standard input are read as they are asked for, so a producer may
/// still be writing; empty ones are skipped. Not thread-safe.
class FileNames {
 public:
  /// `separator` parts the names on standard input: '\n' (a CR before it belongs to the line end) or '\0'.
  /// Of the files in folders, those whose names match `pattern` count, all for an empty one.
  FileNames(std::vector<std::string> arguments, char separator, std::string pattern = {})
      : arguments_(std::move(arguments)), separator_(separator), pattern_(std::move(pattern)) {}

  /// True when all names are there already and there is only one.
  [[nodiscard]] bool IsOne() const;
  /// How many names there are, before the first one is taken: 0 where they come from standard input. Reads
  /// the folders.
  [[nodiscard]] std::size_t Total() const;

  /// The next name; nothing after the last, at a problem and when the program is told to end.
  std::optional<std::string> Next();
  /// What is wrong with the list on standard input or with a folder, as a sentence; empty when nothing is.
  [[nodiscard]] const std::string& problem() const { return problem_.empty() ? folder_problem_ : problem_; }

 private:
  std::optional<std::string> NextOfInput();
  std::optional<std::string> NextOfFolder();
  std::optional<std::string> Checked(std::string name);
  bool Fill();

  std::vector<std::string> arguments_;
  char separator_;
  std::string pattern_;
  std::optional<FolderWalk> folder_;  ///< being walked through
  bool folder_gave_ = false;          ///< it had a file
  std::size_t next_ = 0;
  bool reading_input_ = false;
  bool named_ = false;          ///< standard input held a name
  std::string pending_;         ///< read and not yet given
  std::size_t searched_ = 0;    ///< of `pending_`, known to hold no separator
  std::string problem_;         ///< ends the list
  std::string folder_problem_;  ///< does not
};

}  // namespace tremvik::cli
