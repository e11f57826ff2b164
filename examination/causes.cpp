#include "examination/causes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <vector>

#include "examination/lines.h"
#include "examination/shift.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

constexpr std::size_t kLooked = 50;  // lines that tell what kind of file it is

struct Signature {
  std::string_view begin;
  std::string_view what;
};
constexpr std::array kSignatures{
    Signature{"%PDF", "um documento PDF"},
    Signature{"PK\x03\x04", "um arquivo compactado (ZIP) ou uma planilha"},
    Signature{"\xD0\xCF\x11\xE0", "um documento ou uma planilha de um programa de escritório"},
    Signature{"<?xml", "um arquivo XML"},
    Signature{"<", "uma página ou um arquivo XML"},
    Signature{"{", "um arquivo JSON"},
    Signature{"[", "um arquivo JSON"},
    Signature{"\x1F\x8B", "um arquivo compactado (GZIP)"},
    Signature{"Rar!", "um arquivo compactado (RAR)"},
    Signature{"\x89PNG", "uma imagem"},
    Signature{"\xFF\xD8\xFF", "uma imagem"},
    Signature{"MZ", "um programa"},
    Signature{"|0000|", "uma escrituração fiscal digital"},
};

std::optional<Cause> OtherKindOfFile(std::string_view bytes) {
  const auto lines = SplitLines(bytes, kLooked);
  if (std::ranges::any_of(lines,
                          [](const Line& line) { return FindKind(line.content.substr(0, 2)) != nullptr; }))
    return {};
  const auto known = std::ranges::find_if(
      kSignatures, [&](const Signature& signature) { return bytes.starts_with(signature.begin); });
  std::string porque = "Nenhuma das primeiras linhas começa com um código de registro";
  if (known != kSignatures.end()) porque.append(": o arquivo parece ser ").append(known->what);
  return Cause{1, porque + ". Confira se foi escolhido o arquivo Pré-Formatado.", {}};
}

// Blanks before every record.
std::optional<Cause> LeadingBlanksOfAll(std::string_view bytes) {
  const auto lines = SplitLines(bytes, kLooked);
  const auto shifted =
      std::ranges::count_if(lines, [](const Line& line) { return LeadingBlanks(line.content) > 0; });
  if (2 * shifted <= std::ssize(lines)) return {};
  std::string text;
  for (const Line& line : SplitLines(bytes, kMostLines))
    text.append(line.content.substr(LeadingBlanks(line.content))).append(line.end);
  const auto first =
      std::ranges::find_if(lines, [](const Line& line) { return LeadingBlanks(line.content) > 0; });
  return Cause{static_cast<int>(first - lines.begin()) + 1,
               "As linhas começam com espaços em branco: tudo está deslocado para a direita. Cada linha deve "
               "começar com o código do registro.",
               std::move(text)};
}

// The byte of a character given in UTF-8, or "?" where Windows-1252 does not have it.
char ToWindows1252(std::string_view character) {
  static const auto kBytes = [] {
    std::map<std::string, char, std::less<>> bytes;
    for (int code = 0; code < 256; ++code) {
      const char byte = static_cast<char>(code);
      bytes.emplace(Utf8({&byte, 1}), byte);
    }
    return bytes;
  }();
  const auto found = kBytes.find(character);
  return found == kBytes.end() ? '?' : found->second;
}

// A code point below 0x10000 in UTF-8.
std::string Encoded(unsigned code) {
  if (code < 0x80) return {static_cast<char>(code)};
  if (code < 0x800) return {static_cast<char>(0xC0U | code >> 6U), static_cast<char>(0x80U | (code & 0x3FU))};
  return {static_cast<char>(0xE0U | code >> 12U), static_cast<char>(0x80U | (code >> 6U & 0x3FU)),
          static_cast<char>(0x80U | (code & 0x3FU))};
}

std::optional<Cause> Utf16(std::string_view bytes) {
  const auto zeros = [&](std::size_t first) {
    std::size_t count = 0;
    for (std::size_t i = first; i < std::min<std::size_t>(bytes.size(), 200); i += 2)
      count += bytes[i] == '\0' ? 1U : 0U;
    return count > std::min<std::size_t>(bytes.size(), 200) / 4;
  };
  const bool little = bytes.starts_with("\xFF\xFE") || zeros(1);
  const bool big = bytes.starts_with("\xFE\xFF") || zeros(0);
  if (little == big) return {};
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[little ? i : i + 1]);
    const auto high = static_cast<unsigned char>(bytes[little ? i + 1 : i]);
    const unsigned code = low + 256U * high;
    if (code != 0xFEFF) text += ToWindows1252(Encoded(code));
  }
  return Cause{
      1, "O arquivo está em UTF-16, com dois bytes por caractere. Grave-o em Windows-1252 (ANSI), com um.",
      std::move(text)};
}

std::optional<Cause> ByteOrderMark(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (!bytes.starts_with(kMark)) return {};
  return Cause{1, "O arquivo começa com a marca de ordem de bytes do UTF-8 (EF BB BF). Grave-o sem ela.",
               std::string(bytes.substr(kMark.size()))};
}

// The length of the character of two or three bytes at the begin of `text`; 1 where there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned>(static_cast<unsigned char>(text[i])) : 0U;
  };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  if (byte(0) >= 0xC2 && byte(0) < 0xE0 && follows(1)) return 2;
  if (byte(0) >= 0xE0 && byte(0) < 0xF0 && follows(1) && follows(2)) return 3;
  return 1;
}

std::string FromUtf8(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::string_view character = text.substr(0, CharacterLength(text));
    bytes += character.size() > 1 ? ToWindows1252(character) : character.front();
    text.remove_prefix(character.size());
  }
  return bytes;
}

// Lines that are too long as they stand and right when read as UTF-8.
std::optional<Cause> Utf8Text(std::string_view bytes, const std::vector<Line>& lines) {
  const auto is_wide = [](const Line& line) {
    return !HasRightLength(line.content) && HasRightLength(FromUtf8(line.content));
  };
  const auto wide = std::ranges::count_if(lines, is_wide);
  if (wide == 0) return {};
  const auto first = std::ranges::find_if(lines, is_wide) - lines.begin();
  return Cause{static_cast<int>(first) + 1,
               "O arquivo está em UTF-8, em que um acento ocupa dois bytes: " + std::to_string(wide) +
                   (wide == 1 ? " linha fica longa demais" : " linhas ficam longas demais") +
                   " por isso. Grave-o em Windows-1252 (ANSI).",
               FromUtf8(bytes)};
}

// Line ends of other systems, where no line has the right one.
std::optional<Cause> LineEnds(const std::vector<Line>& lines) {
  if (lines.size() < 2 || std::ranges::any_of(lines, [](const Line& line) { return line.end == kCrLf; }))
    return {};
  const bool feeds = lines.front().end == "\n";
  std::string text;
  for (const Line& line : lines)
    text.append(line.content).append(kCrLf);
  return Cause{
      1,
      std::string("As linhas terminam só com ") + (feeds ? "LF (0A)" : "CR (0D)") +
          ", e não com os dois caracteres CR LF (0D 0A). Grave o arquivo com fins de linha do Windows.",
      std::move(text)};
}

bool IsLeftover(const Line& line) {
  return line.content.find_first_not_of(" \t\x1A") == std::string_view::npos;
}

std::optional<Cause> Leftovers(std::string_view bytes, const std::vector<Line>& lines) {
  const auto record = std::ranges::find_if_not(lines.rbegin(), lines.rend(), IsLeftover);
  if (record == lines.rbegin() || record == lines.rend()) return {};
  const Line& first = *std::prev(record);
  const auto end = static_cast<std::size_t>(first.content.data() - bytes.data());
  const bool ctrl_z = bytes.find('\x1A', end) != std::string_view::npos;
  return Cause{static_cast<int>(std::prev(record).base() - lines.begin()),
               std::string("Depois do último registro há ") +
                   (ctrl_z ? "a marca de fim de arquivo Ctrl-Z (1A)" : "linhas em branco") +
                   ". Nada pode vir depois dele.",
               std::string(bytes.substr(0, end))};
}

}  // namespace

std::optional<Cause> FindCause(std::string_view bytes) {
  if (bytes.empty()) return {};
  if (auto cause = ByteOrderMark(bytes)) return cause;
  if (auto cause = Utf16(bytes)) return cause;
  if (auto cause = LeadingBlanksOfAll(bytes)) return cause;
  if (auto cause = OtherKindOfFile(bytes)) return cause;
  const std::vector<Line> lines = SplitLines(bytes, kMostLines);
  const bool whole = lines.back().content.data() + lines.back().content.size() + lines.back().end.size() ==
                     bytes.data() + bytes.size();
  if (!whole) return {};  // too long to be mended, whatever else it is
  if (auto cause = Leftovers(bytes, lines)) return cause;
  if (auto cause = Utf8Text(bytes, lines)) return cause;
  return LineEnds(lines);
}

}  // namespace tremvik
