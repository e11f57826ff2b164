// What is commonly wrong with a whole file, found before its records are looked at.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tremvik {

/// One cause of many faults.
struct Cause {
  int linha = 1;                        ///< the first line where it shows
  std::string porque;                   ///< what it is and what to do, for the user
  std::optional<std::string> repaired;  ///< the file without it; none where there is nothing to examine
};

/// The first cause found in `bytes`, or none: a byte-order mark, UTF-16 or UTF-8 text, blanks before each
/// record, another kind of file, line ends of other systems, blanks or Ctrl-Z behind the last record.
[[nodiscard]] std::optional<Cause> FindCause(std::string_view bytes);

}  // namespace tremvik
