// Display forms of values and codes: fixed decimal comma and thousands point, no locale.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "host/runtime_error.h"
#include "runtime/numbers.h"

namespace tremvik {

/// A short text held in place, so that formatting a field allocates nothing. Appending past its capacity
/// raises error 5.
class ShortText {
 public:
  static constexpr std::size_t kCapacity = 47;

  ShortText() = default;
  ShortText(std::string_view text) { Append(text); }

  operator std::string_view() const { return {characters_.data(), size_}; }
  [[nodiscard]] std::string_view view() const { return *this; }

  ShortText& Append(std::string_view text);
  ShortText& Append(char c) {
    if (size_ == characters_.size()) throw RuntimeError(erro::kArgumentoInvalido);
    characters_[size_++] = c;
    return *this;
  }

 private:
  std::array<char, kCapacity> characters_{};
  unsigned char size_ = 0;
};

/// A value in cents, digits only, as "1.234,56". Raises error 13 where the text is no number, 6 where it
/// exceeds the runtime's currency.
[[nodiscard]] ShortText FomataValor(std::string_view cents);

/// True of digits that any currency holds, as nearly all values are: `FomataValor` takes them as they stand.
[[nodiscard]] inline bool ValorSimples(std::string_view cents) {
  return cents.size() > 1 && cents.size() < 16 && OnlyDigits(cents);
}

/// The code form of a CFOP (UTF-8) for the declaration's period `ref` (AAAAMM, compared as text): its first
/// four characters after "200212", else its first six without any "0". Raises error 6 above 32767, 13 where a
/// character is no digit.
[[nodiscard]] ShortText TiraZeros(std::string_view ref, std::string_view cfop);

/// Fills the "@" of `mask` with the characters of `text` from the right, blanks where the text ends before.
/// `mask` holds at least as many "@" as `text` has characters.
[[nodiscard]] ShortText Mascara(std::string_view mask, std::string_view text);

/// A date AAAAMMDD as "AAAA/MM/DD".
[[nodiscard]] ShortText DataComBarras(std::string_view data);

/// The 20th day of a period AAAAMM as "20/MM/AAAA".
[[nodiscard]] ShortText DiaVinte(std::string_view periodo);

/// The whole number without leading zeros, halves rounded away from zero; 0 gives an empty text ("####").
[[nodiscard]] ShortText SemZeros(double number);

/// The whole number in at least 15 digits, halves rounded away from zero.
[[nodiscard]] ShortText QuinzeDigitos(double number);

/// Display masks of registration numbers and sub-items.
inline constexpr std::string_view kMascaraIE = "@@@.@@@.@@@.@@@";
inline constexpr std::string_view kMascaraCNPJ = "@@.@@@.@@@/@@@@-@@";
inline constexpr std::string_view kMascaraSubItem = "@@@.@@";
inline constexpr std::string_view kMascaraRE = "@@/@@@@@@@@@@";

}  // namespace tremvik
