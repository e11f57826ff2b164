#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tremvik::text {

/// A table for people: columns as wide as their content, numbers on the right.
struct TextTable {
  struct Column {
    std::string name;
    bool right_aligned = false;
  };
  std::vector<Column> columns;
  std::vector<std::vector<std::string>> rows;  ///< one cell per column

  /// Aligned under a heading line; a table wider than `width` as one "name: value" line per filled cell, the
  /// rows parted by empty lines. Its texts become `Visible` ones.
  [[nodiscard]] std::string Render(std::size_t width, bool colour);
};

}  // namespace tremvik::text
