#include "cli/line_range.h"

#include <charconv>

namespace tremvik::cli {
namespace {

std::optional<int> Line(std::string_view text) {
  int line = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), line);
  if (error != std::errc{} || end != text.data() + text.size() || line < 1) return std::nullopt;
  return line;
}

}  // namespace

std::optional<LineRange> ParseLineRange(std::string_view text) {
  const auto hyphen = text.find('-');
  const auto first = Line(text.substr(0, hyphen));
  const auto last = hyphen == std::string_view::npos ? first : Line(text.substr(hyphen + 1));
  if (!first || !last || *last < *first) return std::nullopt;
  return LineRange{*first, *last};
}

}  // namespace tremvik::cli
