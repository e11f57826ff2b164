#include "text/style.h"

namespace tremvik::text {

std::string Styled(std::string_view text, Style style, bool colour) {
  static constexpr std::string_view kCodes[] = {"", "\x1b[1m", "\x1b[2m", "\x1b[1;31m", "\x1b[32m"};
  if (!colour || style == Style::kPlain || text.empty()) return std::string(text);
  return std::string(kCodes[static_cast<std::size_t>(style)]).append(text).append("\x1b[0m");
}

}  // namespace tremvik::text
