#include "text/table.h"

#include <algorithm>
#include <numeric>

#include "text/readable.h"
#include "text/style.h"

namespace tremvik::text {
namespace {

constexpr std::size_t kGap = 2;

std::vector<std::size_t> Widths(const TextTable& table) {
  std::vector<std::size_t> widths;
  for (const auto& column : table.columns)
    widths.push_back(Cells(column.name));
  for (const auto& row : table.rows) {
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], Cells(row[i]));
  }
  return widths;
}

std::string WithoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string Downwards(const TextTable& table, bool colour) {
  std::size_t widest = 0;
  for (const auto& column : table.columns)
    widest = std::max(widest, Cells(column.name));
  std::string out;
  for (const auto& row : table.rows) {
    if (!out.empty()) out += "\n";
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (row[i].empty()) continue;
      out += Styled(Padded(table.columns[i].name, widest), Style::kDim, colour) + "  " + row[i] + "\n";
    }
  }
  return out;
}

}  // namespace

std::string TextTable::Render(std::size_t width, bool colour) {
  for (auto& row : rows)
    std::ranges::transform(row, row.begin(), Visible);
  for (auto& column : columns)
    column.name = Visible(column.name);
  const auto widths = Widths(*this);
  if (std::accumulate(widths.begin(), widths.end(), kGap * (widths.size() - 1)) > width) {
    return Downwards(*this, colour);
  }
  const auto line = [&](const auto& cell_at) {
    std::string text;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      text += std::string(i == 0 ? 0 : kGap, ' ') + Padded(cell_at(i), widths[i], columns[i].right_aligned);
    }
    return WithoutTrailingBlanks(text);
  };
  std::string out = Styled(line([&](std::size_t i) { return columns[i].name; }), Style::kBold, colour) + "\n";
  for (const auto& row : rows)
    out += line([&](std::size_t i) { return row[i]; }) + "\n";
  return out;
}

}  // namespace tremvik::text
