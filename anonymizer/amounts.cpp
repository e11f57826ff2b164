#include "anonymizer/amounts.h"

#include <algorithm>

#include "anonymizer/registrations.h"
#include "runtime/numbers.h"

namespace tremvik::anonymizer {
namespace {

bool HasPlus(std::string_view field) { return field.starts_with('+'); }

}  // namespace

std::optional<std::int64_t> PlainAmount(std::string_view field) {
  if (!OnlyDigits(field.substr(HasPlus(field) ? 1 : 0))) return {};
  return static_cast<std::int64_t>(Val(field));
}

std::int64_t OtherAmount(std::int64_t amount, sample::Draw& draw) {
  constexpr std::int64_t kSmall = 100;
  if (amount == 0) return 0;
  if (amount < kSmall) return draw.Between<std::int64_t>(1, kSmall - 1);
  return draw.Between(amount / 10, amount);
}

std::optional<std::string> Written(std::int64_t amount, std::string_view field) {
  const std::size_t room = field.size() - (HasPlus(field) ? 1 : 0);
  const std::string digits = std::to_string(amount);
  if (digits.size() > room) return {};
  return (HasPlus(field) ? "+" : "") + std::string(room - digits.size(), '0') + digits;
}

std::string OtherAmountField(std::string_view field, sample::Draw& draw) {
  const auto amount = PlainAmount(field);
  if (!amount) return OtherDigits(field, draw.Bits());
  return Written(OtherAmount(*amount, draw), field).value_or(std::string(field));
}

}  // namespace tremvik::anonymizer
