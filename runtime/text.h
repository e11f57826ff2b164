// Texts of the file: single bytes of Windows-1252, compared by character code.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "layout/kinds.h"

namespace tremvik {

[[nodiscard]] constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// `count` characters of `text` from the 1-based `position` on; fewer, or none, where the text ends before.
[[nodiscard]] constexpr std::string_view Mid(std::string_view text, std::size_t position, std::size_t count) {
  return position > text.size() ? std::string_view{} : text.substr(position - 1, count);
}

/// The first `count` characters, or the whole of a shorter text.
[[nodiscard]] constexpr std::string_view Left(std::string_view text, std::size_t count) {
  return text.substr(0, count);
}

/// `Left` of a UTF-8 text, as hosts give it: a character is a byte with up to three continuation bytes
/// behind.
[[nodiscard]] constexpr std::string_view LeftUtf8(std::string_view text, std::size_t count) {
  constexpr auto kContinues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; };
  std::size_t end = 0;
  for (; count > 0 && end < text.size(); --count) {
    const std::size_t longest = std::min(end + 4, text.size());
    ++end;
    while (end < longest && kContinues(text[end]))
      ++end;
  }
  return text.substr(0, end);
}

/// The last `count` characters, or the whole of a shorter text.
[[nodiscard]] constexpr std::string_view Right(std::string_view text, std::size_t count) {
  return text.size() <= count ? text : text.substr(text.size() - count);
}

/// `text` without the blanks at its end.
[[nodiscard]] constexpr std::string_view TrimEnd(std::string_view text) {
  constexpr std::string_view kBlanks = "        ";  // many at a time: most of a wide field is blank
  while (text.ends_with(kBlanks))
    text.remove_suffix(kBlanks.size());
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// `text` without what it begins and ends with of `blanks`.
[[nodiscard]] constexpr std::string_view Trim(std::string_view text, std::string_view blanks = " ") {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// True when `text` holds nothing but blanks.
[[nodiscard]] constexpr bool IsBlank(std::string_view text) { return TrimEnd(text).empty(); }

/// True when `text` holds an unaccented letter.
[[nodiscard]] bool ContemLetra(std::string_view text);

/// True when the first 32 characters of `text` are hexadecimal digits of either case.
[[nodiscard]] bool ChaveHexaValida(std::string_view text);

/// The character of a Windows-1252 byte. The five codes without one become the control characters of the same
/// number, so nothing is lost.
[[nodiscard]] char16_t CharacterOf(char byte);

/// The Windows-1252 `bytes` as UTF-8.
[[nodiscard]] std::string Utf8(std::string_view bytes);

/// Room for any record's content as UTF-8.
using Utf8Buffer = std::array<char, 3 * Record<Cr20>::kBlock>;
static_assert(std::ranges::max(kKinds, {}, &KindInfo::length).kind == Cr20::kKind);

/// The same without an allocation, for a text of at most one record's length: `bytes` themselves where they
/// are ASCII, otherwise the characters laid into `buffer`.
[[nodiscard]] std::string_view Utf8(std::string_view bytes, Utf8Buffer& buffer);

}  // namespace tremvik
