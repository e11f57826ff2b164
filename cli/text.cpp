#include "cli/text.h"

#include <algorithm>

#include "runtime/text.h"

namespace tremvik::cli {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// The symbol of a control character: the block from U+2400 on repeats the order of the codes.
void AppendControlPicture(std::string& out, unsigned char c) {
  out.append("\xE2\x90").append(1, static_cast<char>(0x80U + (c == 0x7F ? 0x21U : c)));
}

bool IsControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

// Unseen though they are characters: the codes of Windows-1252 without one, no-break space and soft hyphen.
bool IsUnseen(char byte) {
  const auto c = static_cast<unsigned char>(byte);
  return IsControl(c) || c == 0xA0 || c == 0xAD || (c > 0x7F && c < 0xA0 && CharacterOf(byte) == c);
}

// Bytes of `line` that fill `width` cells at most, cut after a blank where there is one.
std::size_t BreakAt(std::string_view line, std::size_t width) {
  std::size_t cells = 0;
  std::size_t last_blank = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (!IsContinuation(line[i]) && ++cells > width) return last_blank > 0 ? last_blank : i;
    if (line[i] == ' ') last_blank = i + 1;
  }
  return line.size();
}

void WrapLine(std::string_view line, std::size_t width, std::vector<std::string>& out) {
  do {
    const std::size_t cut = BreakAt(line, width);
    std::string_view head = line.substr(0, cut);
    line.remove_prefix(cut);
    if (!line.empty()) head = head.substr(0, head.find_last_not_of(' ') + 1);
    out.push_back(Visible(head));
  } while (!line.empty());
}

}  // namespace

std::size_t Cells(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

std::vector<std::string> Wrap(std::string_view text, std::size_t width) {
  std::vector<std::string> out;
  for (;;) {
    const std::size_t end = text.find_first_of("\r\n");
    WrapLine(text.substr(0, end), width, out);
    if (end == std::string_view::npos) return out;
    text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
  }
}

std::string Visible(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const bool upper_control =
        c == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (upper_control) {
      out += kReplacement;
      ++i;
    } else if (IsControl(c)) {
      AppendControlPicture(out, c);
    } else {
      out += text[i];
    }
  }
  return out;
}

std::string ByteCell(char byte) {
  const std::string_view character(&byte, 1);
  return IsUnseen(byte) && !IsControl(static_cast<unsigned char>(byte)) ? std::string(kReplacement)
                                                                        : Visible(Utf8(character));
}

std::string Quoted(std::string_view bytes, std::size_t limit) {
  static constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string out = "\"";
  for (const char byte : bytes.substr(0, limit)) {
    const auto c = static_cast<unsigned char>(byte);
    if (IsUnseen(byte)) {
      out.append("\\x").append(1, kHex[c >> 4U]).append(1, kHex[c & 0xFU]);
    } else {
      out += Utf8({&byte, 1});
    }
  }
  return out + (bytes.size() > limit ? "…\"" : "\"");
}

std::string Count(std::uint64_t n, std::string_view one, std::string_view many) {
  std::string digits = std::to_string(n);
  for (std::size_t i = digits.size(); i > 3; i -= 3)
    digits.insert(i - 3, ".");
  return digits.append(" ").append(n == 1 ? one : many);
}

std::string Padded(std::string_view text, std::size_t width, bool right_aligned) {
  const std::size_t cells = Cells(text);
  const std::string blanks(cells < width ? width - cells : 0, ' ');
  return right_aligned ? blanks + std::string(text) : std::string(text) + blanks;
}

}  // namespace tremvik::cli
