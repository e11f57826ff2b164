#include "checks/numbers.h"

#include <cstddef>
#include <cstdint>

#include "checks/text.h"
#include "host/runtime_error.h"
#include "layout/int16.h"

namespace tremvik {
namespace {

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

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

}  // namespace

double Val(std::string_view text) {
  constexpr std::size_t kMostDigits = 19;  // that any 64-bit number holds
  if (text.size() > kMostDigits) return LeadingNumber(text, ".");
  std::uint64_t value = 0;
  unsigned others = 0;
  for (const char c : text) {
    value = value * 10 + static_cast<unsigned char>(c) - '0';
    others |= static_cast<unsigned>(!IsDigit(c));
  }
  return others == 0 ? static_cast<double>(value) : LeadingNumber(text, ".");
}

int IntVal(std::string_view text) { return static_cast<int>(Val(text)); }

bool OnlyDigits(std::string_view text) {
  unsigned others = text.empty() ? 1 : 0;
  for (const char c : text)
    others |= static_cast<unsigned>(!IsDigit(c));
  return others == 0;
}

bool IsNumeric(std::string_view text) {
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
  if (!IsNumeric(text)) throw RuntimeError(erro::kTiposIncompativeis);
  return LeadingNumber(text, ".,");
}

std::int16_t ToInt16(std::string_view text) { return ToInt16(ToNumber(text)); }

bool LefRigNumChr(std::string_view field, bool rejects_zero) {
  if (OnlyDigits(field)) return rejects_zero && Val(field) == 0;
  if (field.starts_with(' ') || field.starts_with('-')) return true;
  if (field.ends_with(' ')) return true;
  if (!IsNumeric(field)) return true;
  if (field.find_first_of(".,") != std::string_view::npos) return true;
  return rejects_zero && Val(field) == 0;
}

}  // namespace tremvik
