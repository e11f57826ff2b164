#include "text/json_text.h"

#include <fmt/format.h>
#include <utf8.h>
#include <utf8/unchecked.h>

#include <iterator>
#include <nlohmann/json.hpp>

#include "text/readable.h"

namespace tremvik::text {
namespace {

// First bytes in UTF-8 of DEL and of all that `IsUnseen` knows, among others.
bool MayBeginUnseen(unsigned char byte) {
  return byte == 0x7F || byte == 0xC2 || byte == 0xD8 || byte >= 0xE1;
}

// DEL and what is not seen as JSON escapes; characters beyond 16 bits as their two halves.
std::string Escaped(const std::string& text) {
  std::string out;
  for (auto at = text.begin(); at != text.end();) {
    const auto begin = at;
    const char32_t code = utf8::unchecked::next(at);
    if (code != 0x7F && !IsUnseen(code)) {
      out.append(begin, at);
    } else if (code < 0x10000) {
      fmt::format_to(std::back_inserter(out), "\\u{:04x}", static_cast<std::uint32_t>(code));
    } else {
      const auto high = static_cast<std::uint32_t>(0xD7C0 + (code >> 10U));
      const auto low = static_cast<std::uint32_t>(0xDC00 + (code & 0x3FFU));
      fmt::format_to(std::back_inserter(out), "\\u{:04x}\\u{:04x}", high, low);
    }
  }
  return out;
}

}  // namespace

std::string JsonText(const nlohmann::ordered_json& value) {
  std::string text = value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  unsigned found = 0;  // without an early end they go many at a time
  for (const char c : text)
    found |= MayBeginUnseen(static_cast<unsigned char>(c)) ? 1U : 0U;
  if (found == 0) return text;
  return Escaped(text);
}

}  // namespace tremvik::text
