#include "adapters/com/text.h"

#include <array>
#include <cstdint>

namespace tremvik::com {
namespace {

constexpr char32_t kNoCharacter = 0xFFFD;
constexpr char32_t kSurrogates = 0xD800;
constexpr char32_t kTrails = 0xDC00;
constexpr char32_t kAfterSurrogates = 0xE000;
constexpr char32_t kBeyondOneUnit = 0x10000;
constexpr char32_t kLast = 0x10FFFF;

bool IsLead(char32_t unit) { return unit >= kSurrogates && unit < kTrails; }
bool IsTrail(char32_t unit) { return unit >= kTrails && unit < kAfterSurrogates; }

void AppendUtf8(std::string& utf8, char32_t c) {
  const auto continued = [c](unsigned shift) { return static_cast<char>(0x80U | (c >> shift & 0x3FU)); };
  if (c < 0x80) {
    utf8 += static_cast<char>(c);
  } else if (c < 0x800) {
    utf8.append({static_cast<char>(0xC0U | c >> 6U), continued(0)});
  } else if (c < kBeyondOneUnit) {
    utf8.append({static_cast<char>(0xE0U | c >> 12U), continued(6), continued(0)});
  } else {
    utf8.append({static_cast<char>(0xF0U | c >> 18U), continued(12), continued(6), continued(0)});
  }
}

// Takes the character in front of `utf8`; one byte alone where there is none.
char32_t TakeCharacter(std::string_view& utf8) {
  struct Form {
    unsigned mask, lead;  // what the first byte is under which bits
    char32_t least;       // below it, a shorter form is the right one
  };
  constexpr std::array kForms{Form{0x80, 0x00, 0}, Form{0xE0, 0xC0, 0x80}, Form{0xF0, 0xE0, 0x800},
                              Form{0xF8, 0xF0, kBeyondOneUnit}};
  const auto byte = [utf8](std::size_t at) { return static_cast<unsigned char>(utf8[at]); };
  for (std::size_t more = 0; more < kForms.size() && more < utf8.size(); ++more) {
    if ((byte(0) & kForms[more].mask) != kForms[more].lead) continue;
    char32_t c = byte(0) & ~kForms[more].mask;
    bool good = true;
    for (std::size_t i = 1; i <= more; ++i) {
      good = good && (byte(i) & 0xC0U) == 0x80;
      c = c << 6U | (byte(i) & 0x3FU);
    }
    if (!good || c < kForms[more].least || c > kLast) break;
    utf8.remove_prefix(more + 1);
    return c;
  }
  utf8.remove_prefix(1);
  return kNoCharacter;
}

}  // namespace

std::wstring Wide(std::string_view utf8) {
  std::wstring wide;
  wide.reserve(utf8.size());
  while (!utf8.empty()) {
    char32_t c = TakeCharacter(utf8);
    if (c >= kBeyondOneUnit) {
      c -= kBeyondOneUnit;
      wide += static_cast<wchar_t>(kSurrogates + (c >> 10U));
      c = kTrails + (c & 0x3FFU);
    }
    wide += static_cast<wchar_t>(c);
  }
  return wide;
}

std::string Utf8(std::wstring_view wide) {
  std::string utf8;
  utf8.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t c = wide[i];
    if (IsLead(c) && i + 1 < wide.size() && IsTrail(wide[i + 1]))
      c = kBeyondOneUnit + ((c - kSurrogates) << 10U) + (char32_t{wide[++i]} - kTrails);
    AppendUtf8(utf8, c);
  }
  return utf8;
}

}  // namespace tremvik::com
