#include "runtime/numbers.h"

#include <cstddef>

#include "host/runtime_error.h"
#include "runtime/int16.h"
#include "runtime/text.h"

namespace tremvik {

double LeadingNumber(std::string_view text, std::string_view separators) {
  double digits = 0;
  double scale = 1;
  bool negative = false;
  bool started = false;
  bool fraction = false;
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\n') continue;
    if (IsDigit(c)) {
      digits = digits * 10 + (c - '0');
      if (fraction) scale *= 10;
    } else if (!fraction && separators.find(c) != std::string_view::npos) {
      fraction = true;
    } else if ((c == '-' || c == '+') && !started) {
      negative = c == '-';
    } else {
      break;
    }
    started = true;
  }
  const double value = digits / scale;
  return negative ? -value : value;
}

bool IsNumeric(std::string_view text) {
  if (OnlyDigits(text)) return true;
  text = Trim(text);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  std::size_t digits = 0;
  std::size_t separators = 0;
  for (const char c : text) {
    if (IsDigit(c)) {
      ++digits;
    } else if (c == ',' || c == '.') {
      ++separators;
    } else {
      return false;
    }
  }
  return digits > 0 && separators <= 1;
}

double ToNumber(std::string_view text) {
  if (OnlyDigits(text)) return Val(text);
  if (!IsNumeric(text)) throw RuntimeError(erro::kTiposIncompativeis);
  return LeadingNumber(text, ".,");
}

std::int16_t ToInt16(std::string_view text) {
  constexpr std::size_t kNeverTooMany = 4;  // digits
  if (text.size() <= kNeverTooMany && OnlyDigits(text)) return static_cast<std::int16_t>(IntVal(text));
  return ToInt16(ToNumber(text));
}

}  // namespace tremvik
