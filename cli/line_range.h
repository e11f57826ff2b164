#pragma once

#include <optional>
#include <string_view>

namespace tremvik::cli {

/// Lines of a file from 1, both ends included.
struct LineRange {
  int first = 0;
  int last = 0;

  [[nodiscard]] bool Contains(int line) const { return line >= first && line <= last; }
};

/// "96" or "96-99"; nothing for anything else, such as a line 0 or an end before the beginning.
[[nodiscard]] std::optional<LineRange> ParseLineRange(std::string_view text);

}  // namespace tremvik::cli
