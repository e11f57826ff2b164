// The lines of a file, told apart as the text passes do.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "layout/kinds.h"

namespace tremvik {

/// One line: what stands before its end, the end itself ("\r\n", "\n", "\r", or nothing at the end of the
/// file) and the byte behind, which the run over the records takes for the second separator of a short end.
struct Line {
  std::string_view content;
  std::string_view end;
  std::string_view behind;  ///< of the next line, at most one byte
};

/// Lines that are looked at: a file of more than 32,766 records is never accepted.
inline constexpr std::size_t kMostLines = 40000;

/// Splits `bytes` into at most `most` lines; what is left over is not looked at.
[[nodiscard]] std::vector<Line> SplitLines(std::string_view bytes, std::size_t most);

/// How many lines `bytes` have.
[[nodiscard]] std::size_t CountLines(std::string_view bytes);

/// The kind that the first two characters of a line name, or else the only kind of its length; null where
/// there is none.
[[nodiscard]] const KindInfo* KindOf(std::string_view content);

/// True when a line has the length of the kind that it names.
[[nodiscard]] bool HasRightLength(std::string_view content);

/// What the run over the records finds in the place of a line's separators.
[[nodiscard]] std::string Separators(const Line& line);

}  // namespace tremvik
