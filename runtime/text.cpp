#include "runtime/text.h"

#include <algorithm>
#include <array>

namespace tremvik {
namespace {

constexpr bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

constexpr bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// The characters of the codes 0x80 to 0x9F; every other code is the character of its number.
constexpr std::array<char16_t, 32> kUpperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Writes one byte's character at `out` and returns the end of it, at most three bytes on.
char* PutUtf8(char* out, char byte) {
  const unsigned character = CharacterOf(byte);
  if (character < 0x80) {
    *out++ = static_cast<char>(character);
  } else if (character < 0x800) {
    *out++ = static_cast<char>(0xC0U | (character >> 6U));
    *out++ = static_cast<char>(0x80U | (character & 0x3FU));
  } else {
    *out++ = static_cast<char>(0xE0U | (character >> 12U));
    *out++ = static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
    *out++ = static_cast<char>(0x80U | (character & 0x3FU));
  }
  return out;
}

}  // namespace

char16_t CharacterOf(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code >= 0x80 && code < 0xA0 ? kUpperControls.at(code - 0x80U) : code;
}

bool ContemLetra(std::string_view text) { return std::ranges::any_of(text, IsLetter); }

bool ChaveHexaValida(std::string_view text) {
  constexpr std::size_t kLength = 32;
  return text.size() >= kLength && std::ranges::all_of(text.substr(0, kLength), IsHexDigit);
}

std::string Utf8(std::string_view bytes) {
  std::string text(bytes.size() * 3, '\0');
  char* out = text.data();
  for (const char byte : bytes)
    out = PutUtf8(out, byte);
  text.resize(static_cast<std::size_t>(out - text.data()));
  return text;
}

std::string_view Utf8(std::string_view bytes, Utf8Buffer& buffer) {
  unsigned char bits = 0;  // of all bytes together: without an early end they go many at a time
  for (const char byte : bytes)
    bits |= static_cast<unsigned char>(byte);
  if (bits < 0x80) return bytes;
  char* out = buffer.data();
  for (const char byte : Left(bytes, buffer.size() / 3))
    out = PutUtf8(out, byte);
  return {buffer.data(), static_cast<std::size_t>(out - buffer.data())};
}

}  // namespace tremvik
