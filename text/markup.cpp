#include "text/markup.h"

#include "text/readable.h"

namespace tremvik::text {
namespace {

// U+FFFE and U+FFFF, which UTF-8 can write and XML cannot.
bool IsNoCharacter(std::string_view text) {
  return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

// What stands for a character that would be markup; empty for others.
std::string_view EntityOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string Markup(std::string_view text) {
  const std::string visible = Visible(text);
  std::string out;
  for (std::size_t i = 0; i < visible.size(); ++i) {
    const std::string_view entity = EntityOf(visible[i]);
    if (!entity.empty()) {
      out += entity;
    } else if (IsNoCharacter(std::string_view(visible).substr(i))) {
      out += "\uFFFD";
      i += 2;
    } else {
      out += visible[i];
    }
  }
  return out;
}

}  // namespace tremvik::text
