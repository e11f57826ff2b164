#include "text/markup.h"

#include "text/readable.h"

namespace tremvik::text {
namespace {

// U+FFFE and U+FFFF, which UTF-8 can write and XML cannot.
bool IsNoCharacter(std::string_view text) {
  return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

}  // namespace

std::string Markup(std::string_view text) {
  const std::string visible = Visible(text);
  std::string out;
  for (std::size_t i = 0; i < visible.size(); ++i) {
    switch (visible[i]) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      default:
        if (IsNoCharacter(std::string_view(visible).substr(i))) {
          out += "\uFFFD";
          i += 2;
        } else {
          out += visible[i];
        }
    }
  }
  return out;
}

}  // namespace tremvik::text
