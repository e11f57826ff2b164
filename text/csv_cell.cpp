#include "text/csv_cell.h"

#include "text/readable.h"

namespace tremvik::text {

std::string CsvCell(std::string_view text) {
  const std::string visible = Visible(text);
  std::string cell = "\"";
  // Blanks in front do not keep every spreadsheet from calculating.
  const std::size_t first = visible.find_first_not_of(' ');
  const auto begins = [&](std::string_view sign) {
    return first != std::string::npos && std::string_view(visible).substr(first).starts_with(sign);
  };
  // The wide forms of the signs count, too.
  for (const std::string_view sign : {"=", "+", "-", "@", "＝", "＋", "－", "＠"}) {
    if (begins(sign)) cell += '\'';
  }
  for (const char c : visible)
    cell.append(c == '"' ? 2 : 1, c);
  return cell + '"';
}

}  // namespace tremvik::text
