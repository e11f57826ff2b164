#include "runtime/display.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

#include "host/runtime_error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

// At most seventeen digits with points every three and two decimals: each goes to its place, and the text
// begins at the first one that counts.
ShortText Moeda(std::string_view cents) {
  constexpr std::array<std::size_t, 17> kPlaces{0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 16, 17, 18, 20, 21};
  constexpr std::size_t kUnits = 14;  // counts always
  std::array<char, kPlaces.size()> digits{};
  digits.fill('0');
  std::ranges::copy(cents, digits.end() - std::ssize(cents));
  std::array<char, 23> text{"000.000.000.000.000,00"};
  for (std::size_t i = 0; i < digits.size(); ++i)
    text[kPlaces[i]] = digits[i];
  const auto first = static_cast<std::size_t>(std::ranges::find_if(digits, [](char c) { return c != '0'; }) -
                                              digits.begin());
  return std::string_view(text.data(), text.size() - 1).substr(kPlaces[std::min(first, kUnits)]);
}

// Halves go away from zero.
ShortText Inteiro(double number, std::size_t digits) {
  constexpr double kExact = 1e15;
  std::array<char, 40> text{};
  char* const begin = text.data();
  char* const limit = begin + text.size();
  const double rounded = std::round(number);
  const auto [end, error] = std::abs(rounded) < kExact
                                ? std::to_chars(begin, limit, static_cast<std::int64_t>(rounded))
                                : std::to_chars(begin, limit, rounded, std::chars_format::fixed, 0);
  const std::string_view plain(begin, static_cast<std::size_t>(end - begin));
  ShortText result;
  for (std::size_t i = plain.size(); i < digits; ++i)
    result.Append('0');
  return result.Append(plain);
}

}  // namespace

ShortText& ShortText::Append(std::string_view text) {
  if (text.size() > characters_.size() - size_) throw RuntimeError(erro::kArgumentoInvalido);
  std::ranges::copy(text, characters_.begin() + size_);
  size_ = static_cast<unsigned char>(size_ + text.size());
  return *this;
}

ShortText FomataValor(std::string_view cents) {
  constexpr std::int64_t kMaior = 92233720368547758;  // the greatest currency, in cents
  if (ValorSimples(cents)) return Moeda(cents);
  const std::string_view decimals = Right(cents, 2);
  std::string masked(cents.substr(0, cents.size() - decimals.size()));
  masked.append(decimals.size() == 1 ? ", " : ",").append(decimals);
  if (!IsNumeric(masked)) throw RuntimeError(erro::kTiposIncompativeis);
  std::int64_t value = 0;
  const auto append = [&value](int digit) {
    if (value > (kMaior - digit) / 10) throw RuntimeError(erro::kEstouro);
    value = value * 10 + digit;
  };
  for (const char c : masked) {
    if (IsDigit(c)) append(c - '0');
  }
  for (auto given = std::ranges::count_if(decimals, IsDigit); given < 2; ++given)
    append(0);
  const bool negative = masked.find('-') != std::string::npos && value > 0;
  return ShortText(negative ? "-" : "").Append(Moeda(std::to_string(value)));
}

ShortText TiraZeros(std::string_view ref, std::string_view cfop) {
  if (ref > "200212") return LeftUtf8(cfop, 4);
  std::int16_t number = 0;
  for (const char c : LeftUtf8(cfop, 6)) {
    if (c == '0') continue;
    std::array<char, 8> text{};
    char* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    *end = c;
    number = ToInt16(std::string_view(text.data(), static_cast<std::size_t>(end + 1 - text.data())));
  }
  std::array<char, 8> text{};
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  return std::string_view(text.data(), static_cast<std::size_t>(end - text.data()));
}

ShortText Mascara(std::string_view mask, std::string_view text) {
  std::array<char, ShortText::kCapacity> filled{};
  if (mask.size() > filled.size()) throw RuntimeError(erro::kArgumentoInvalido);
  for (std::size_t i = mask.size(); i-- > 0;) {
    filled[i] = mask[i];
    if (mask[i] != '@') continue;
    filled[i] = text.empty() ? ' ' : text.back();
    if (!text.empty()) text.remove_suffix(1);
  }
  return std::string_view(filled.data(), mask.size());
}

ShortText DataComBarras(std::string_view data) { return Mascara("@@@@/@@/@@", data); }

ShortText DiaVinte(std::string_view periodo) {
  return ShortText("20/").Append(Right(periodo, 2)).Append('/').Append(Left(periodo, 4));
}

ShortText SemZeros(double number) { return std::round(number) == 0 ? ShortText() : Inteiro(number, 1); }

ShortText QuinzeDigitos(double number) { return Inteiro(number, 15); }

}  // namespace tremvik
