#include "cli/json_line.h"

#include <fmt/format.h>
#include <utf8.h>
#include <utf8/unchecked.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "cli/text.h"

namespace tremvik::cli {
namespace {

// DEL and what is not seen as JSON escapes; characters beyond 16 bits as their two halves.
std::string Escaped(const std::string& line) {
  std::string out;
  for (auto at = line.begin(); at != line.end();) {
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

std::string JsonLine(const nlohmann::ordered_json& object) {
  std::string line = object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
  const bool plain = std::ranges::all_of(line, [](char c) { return static_cast<unsigned char>(c) < 0x7F; });
  return plain ? line : Escaped(line);
}

}  // namespace tremvik::cli
