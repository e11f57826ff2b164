#include "anonymizer/occurrence.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>

#include "anonymizer/amounts.h"
#include "anonymizer/order_map.h"
#include "anonymizer/registrations.h"
#include "checks/credit_code.h"
#include "runtime/text.h"
#include "sample/draw.h"

namespace tremvik::anonymizer {
namespace {

constexpr int kAttempts = 200;
constexpr std::size_t kPart = 3;    // digits of base 36 for the amount, and as many for the registration
constexpr std::size_t kLetter = 3;  // where the sub-item's letter stands
constexpr std::size_t kRest = 7;    // where what follows no rule begins
constexpr std::int64_t kCents = 100;

std::int64_t Turns() {
  const auto base = static_cast<std::int64_t>(kBase36.size());
  return base * base * base;
}

// The number that three digits of base 36 give; none where one is no such digit.
std::optional<std::int64_t> NumberOf(std::string_view digits, bool least_first) {
  std::string ordered(digits);
  if (least_first) std::ranges::reverse(ordered);
  std::int64_t number = 0;
  for (const char digit : ordered) {
    const std::size_t value = kBase36.find(digit);
    if (value == std::string_view::npos) return {};
    number = number * static_cast<std::int64_t>(kBase36.size()) + static_cast<std::int64_t>(value);
  }
  return number;
}

// An amount whose code begins with `part`, in the place of `amount`, whose code may begin with another one.
std::int64_t AmountFor(std::string_view part, std::int64_t amount, sample::Draw& draw) {
  if (amount == 0) return 0;
  const std::int64_t turns = amount / kCents / Turns();
  const std::int64_t turn = turns > 0 ? draw.Between<std::int64_t>(0, turns - 1) : 0;
  const std::int64_t whole = turn * Turns() + NumberOf(part, true).value_or(0);
  return whole * kCents + draw.Between<std::int64_t>(whole == 0 ? 1 : 0, kCents - 1);
}

// An amount field whose code begins with `part`. What is not plain is read up to its first other character.
std::string OtherValor(std::string_view valor, std::string_view part, sample::Draw& draw) {
  const std::size_t plain = std::min(valor.find_first_not_of("0123456789"), valor.size());
  const std::string_view number = valor.substr(0, valor.starts_with('+') ? valor.size() : plain);
  const auto amount = PlainAmount(number);
  const auto other = amount ? Written(AmountFor(part, *amount, draw), number) : std::nullopt;
  return other.value_or(std::string(number)) + OtherDigits(valor.substr(number.size()), draw.Bits());
}

// The part of a wrong code that the registration would give, as far from the right one as it was.
std::string MovedPart(std::string_view part, std::string_view right_before, std::string_view right_now) {
  const auto number = NumberOf(part, false);
  const auto before = NumberOf(right_before, false);
  const auto now = NumberOf(right_now, false);
  if (!number || !before || !now) return std::string(part);
  std::int64_t rest = std::clamp<std::int64_t>(*now + *number - *before, 0, Turns() - 1);
  std::string moved(kPart, '0');
  for (std::size_t i = kPart; i > 0; --i, rest /= static_cast<std::int64_t>(kBase36.size()))
    moved[i - 1] = kBase36[static_cast<std::size_t>(rest) % kBase36.size()];
  return moved;
}

// Replaces the codes of one occurrence.
class Codes {
 public:
  Codes(const Occurrence& occurrence, const Taxpayer& taxpayer, std::uint64_t seed)
      : occurrence_(occurrence),
        taxpayer_(taxpayer),
        seed_(seed),
        draw_(seed),
        parts_(Pieces(0, kPart), draw_),
        rests_(Pieces(kRest, std::string_view::npos), draw_) {}

  [[nodiscard]] OtherDetail Other(const Detail& detail) const {
    const std::string_view part = detail.codigo.substr(0, kPart);
    const std::string rest = rests_[detail.codigo.substr(kRest)];
    sample::Draw draw(Mixed(seed_, detail.line));
    if (!Rejected(detail.codigo, detail.valor, taxpayer_.before)) {
      const std::string valor = OtherValor(detail.valor, parts_[part], draw);
      return {valor, InicioDoCodigo(valor, occurrence_.sub_item, taxpayer_.now) + rest};
    }
    const auto of_taxpayer = [&](std::string_view ie) {
      const std::string begin = InicioDoCodigo("0", occurrence_.sub_item, ie);
      return begin.empty() ? begin : begin.substr(kLetter + 1);
    };
    OtherDetail other;
    other.codigo = parts_[part] + detail.codigo[kLetter] +
                   MovedPart(detail.codigo.substr(kLetter + 1, kPart), of_taxpayer(taxpayer_.before),
                             of_taxpayer(taxpayer_.now)) +
                   rest;
    do {
      other.valor = OtherAmountField(detail.valor, draw);
    } while (!Rejected(other.codigo, other.valor, taxpayer_.now) && draw.Chance(99));
    return other;
  }

 private:
  [[nodiscard]] bool Rejected(std::string_view code, std::string_view valor, std::string_view ie) const {
    return CodCredAcumuladoRejeitado(code, valor, occurrence_.sub_item, ie);
  }
  [[nodiscard]] std::set<std::string> Pieces(std::size_t begin, std::size_t size) const {
    std::set<std::string> pieces;
    for (const Detail& detail : occurrence_.details) {
      if (!detail.codigo.empty()) pieces.emplace(detail.codigo.substr(begin, size));
    }
    return pieces;
  }

  const Occurrence& occurrence_;
  const Taxpayer& taxpayer_;
  std::uint64_t seed_;
  sample::Draw draw_;
  OrderMap parts_;
  OrderMap rests_;
};

// True when the codes compare with one another as before, and are rejected where they were.
bool Alike(const Occurrence& before, const OtherOccurrence& now, const Taxpayer& taxpayer) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < before.details.size(); ++i) {
    const Detail& detail = before.details[i];
    const OtherDetail& other = now.details[i];
    if (detail.codigo.empty()) continue;
    if (CodCredAcumuladoRejeitado(detail.codigo, detail.valor, before.sub_item, taxpayer.before) !=
        CodCredAcumuladoRejeitado(other.codigo, other.valor, before.sub_item, taxpayer.now))
      return false;
    order.push_back(i);
  }
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return before.details[i].codigo; });
  return std::ranges::adjacent_find(order, [&](std::size_t a, std::size_t b) {
           return (before.details[a].codigo < before.details[b].codigo) !=
                  (now.details[a].codigo < now.details[b].codigo);
         }) == order.end();
}

// The sum of the details with a code, or of those without; none where there is none or one is not plain.
template <typename D>
std::optional<std::int64_t> Sum(const Occurrence& occurrence, const std::vector<D>& details, bool with_code) {
  std::optional<std::int64_t> sum;
  for (std::size_t i = 0; i < details.size(); ++i) {
    if (occurrence.details[i].codigo.empty() == with_code) continue;
    const auto amount = PlainAmount(details[i].valor);
    if (!amount) return {};
    sum = sum.value_or(0) + *amount;
  }
  return sum;
}

// The occurrence's amount, which equals the sums that it did and no other.
std::string OtherTotal(const Occurrence& before, const OtherOccurrence& now, sample::Draw& draw) {
  const auto total = PlainAmount(before.valor);
  if (!total) return OtherAmountField(before.valor, draw);
  std::vector<std::int64_t> others;
  for (const bool with_code : {false, true}) {
    const auto sum = Sum(before, before.details, with_code);
    const auto other = Sum(before, now.details, with_code);
    if (!sum || !other) continue;
    if (sum == total) return Written(*other, before.valor).value_or(std::string(before.valor));
    others.push_back(*other);
  }
  for (int i = 0; i < kAttempts; ++i) {
    const std::int64_t drawn = OtherAmount(*total, draw);
    if (std::ranges::find(others, drawn) == others.end())
      return Written(drawn, before.valor).value_or(std::string(before.valor));
  }
  return std::string(before.valor);
}

}  // namespace

OtherOccurrence Replace(const Occurrence& occurrence, const Taxpayer& taxpayer, std::uint64_t seed) {
  OtherOccurrence other;
  for (int i = 0; i < kAttempts; ++i) {
    const std::uint64_t attempt = Mixed(seed, std::to_string(i));
    const Codes codes(occurrence, taxpayer, attempt);
    other.details.clear();
    for (const Detail& detail : occurrence.details) {
      sample::Draw draw(Mixed(attempt, detail.line));
      other.details.push_back(detail.codigo.empty() ? OtherDetail{OtherAmountField(detail.valor, draw), {}}
                                                    : codes.Other(detail));
    }
    if (Alike(occurrence, other, taxpayer)) break;
  }
  sample::Draw draw(Mixed(seed, occurrence.line));
  other.valor = OtherTotal(occurrence, other, draw);
  return other;
}

}  // namespace tremvik::anonymizer
