#pragma once

#include <string>
#include <string_view>

namespace tremvik::text {

/// `Visible` text as one cell of a CSV text for spreadsheets, in quotes. What a spreadsheet would calculate
/// gets an apostrophe in front.
[[nodiscard]] std::string CsvCell(std::string_view text);

}  // namespace tremvik::text
