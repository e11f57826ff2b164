// Numbers in texts, by the desktop runtime's rules. Fields hold plain digits nearly always, so that case
// comes first everywhere.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "runtime/digits.h"
#include "runtime/text.h"

namespace tremvik {

/// True for digits and nothing else, at least one.
[[nodiscard]] inline bool OnlyDigits(std::string_view text) {
  if (DigitText::Fits(text)) return DigitText(text).valid();
  return !text.empty() && std::ranges::all_of(text, IsDigit);
}

/// The number that `text` begins with: blanks (space, tab, LF) are skipped wherever they stand; optional
/// sign, digits, one of `separators`; the first other character ends it. No number gives 0.
[[nodiscard]] double LeadingNumber(std::string_view text, std::string_view separators);

/// The leading number of `text` with a point as its separator: a comma ends it.
[[nodiscard]] inline double Val(std::string_view text) {
  if (!OnlyDigits(text) || text.size() > DigitText::kMost) return LeadingNumber(text, ".");
  if (DigitText::Fits(text)) return static_cast<double>(DigitText(text).Value());
  int value = 0;
  for (const char c : text)
    value = value * 10 + (c - '0');
  return value;
}

/// `Val` of a text known to hold a whole number of at most nine digits.
[[nodiscard]] inline int IntVal(std::string_view text) { return static_cast<int>(Val(text)); }

/// The runtime's permissive numeric test: spaces around, one leading sign, digits with at most one decimal
/// comma or point, at least one digit.
[[nodiscard]] bool IsNumeric(std::string_view text);

/// The value of a text that passes `IsNumeric`, comma or point as the decimal separator. Raises error 13
/// where it does not pass.
[[nodiscard]] double ToNumber(std::string_view text);

/// The text as a 16-bit integer. Raises error 13 where it is not numeric, 6 outside -32768..32767.
[[nodiscard]] std::int16_t ToInt16(std::string_view text);

/// True when a numeric field is inconsistent: anything but digits, a plus in front of them allowed, or, with
/// `rejects_zero`, the value 0.
[[nodiscard]] inline bool LefRigNumChr(std::string_view field, bool rejects_zero = false) {
  if (!OnlyDigits(field.starts_with('+') ? field.substr(1) : field)) return true;
  return rejects_zero && Val(field) == 0;
}

}  // namespace tremvik
