#include "text/folding.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace tremvik::text {
namespace {

// The next character of `text`, taken from it; a byte that begins no UTF-8 character of two bytes or more is
// one of Windows-1252.
char32_t TakeCharacter(std::string_view& text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  std::size_t length = 1;
  if (first >= 0xC2 && first < 0xF5) length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  char32_t code = first;
  for (std::size_t i = 1; i < length; ++i) {
    if (i >= text.size() || (byte(i) & 0xC0U) != 0x80U) {
      length = 1;
      code = first;
      break;
    }
    const auto bits = static_cast<unsigned>(byte(i) & 0x3FU);
    code = (i == 1 ? static_cast<char32_t>(first & (0x7FU >> length)) : code) << 6U | bits;
  }
  text.remove_prefix(length);
  return code;
}

constexpr char kNothing = '\0';
constexpr char kBlank = ' ';

// A character without accent and case; `kNothing` for an accent that stands alone.
char Plain(char32_t code) {
  static constexpr std::string_view kLatin =
      "aaaaaaaceeeeiiiidnooooo ouuuuypsaaaaaaaceeeeiiiidnooooo ouuuuypy";  // from U+00C0 on
  if (code >= 'a' && code <= 'z') return static_cast<char>(code);
  if (code >= '0' && code <= '9') return static_cast<char>(code);
  if (code >= 'A' && code <= 'Z') return static_cast<char>(code - 'A' + 'a');
  if (code >= 0xC0 && code < 0xC0 + kLatin.size()) return kLatin[code - 0xC0];
  if (code == 0xAA) return 'a';
  if (code == 0xBA || code == 0xB0) return 'o';
  return code >= 0x300 && code < 0x370 ? kNothing : kBlank;
}

}  // namespace

std::string Folded(std::string_view text) {
  std::string folded;
  while (!text.empty()) {
    const char c = Plain(TakeCharacter(text));
    const bool second_blank = c == kBlank && (folded.empty() || folded.back() == kBlank);
    if (c != kNothing && !second_blank) folded += c;
  }
  if (!folded.empty() && folded.back() == kBlank) folded.pop_back();
  return folded;
}

std::size_t Distance(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t before = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < other.size(); ++j) {
      const std::size_t changed = before + (one[i] == other[j] ? 0U : 1U);
      before = row[j + 1];
      row[j + 1] = std::min({changed, before + 1, row[j] + 1});
    }
  }
  return row.back();
}

std::string_view Nearest(std::string_view word, std::span<const std::string> names) {
  constexpr std::size_t kLongest = 40;
  if (names.empty() || word.size() > kLongest) return {};
  const std::string folded = Folded(word);
  const auto distance = [&](const std::string& name) { return Distance(folded, Folded(name)); };
  const auto nearest = std::ranges::min_element(names, {}, distance);
  return distance(*nearest) <= (folded.size() + 2) / 3 ? std::string_view(*nearest) : std::string_view();
}

}  // namespace tremvik::text
