#include "text/style.h"

#include "text/readable.h"

namespace tremvik::text {

std::string Styled(std::string_view text, Style style, bool colour) {
  static constexpr std::string_view kCodes[] = {"", "\x1b[1m", "\x1b[2m", "\x1b[1;31m", "\x1b[32m"};
  if (!colour || style == Style::kPlain || text.empty()) return std::string(text);
  return std::string(kCodes[static_cast<std::size_t>(style)]).append(text).append("\x1b[0m");
}

std::string StyledLines(std::string_view text, Style style, const Look& look) {
  std::string out;
  for (const std::string& line : Wrap(text, look.width))
    out += Styled(line, style, look.colour) + "\n";
  return out;
}

}  // namespace tremvik::text
