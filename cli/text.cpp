#include "cli/text.h"

#include <algorithm>
#include <array>

namespace tremvik::cli {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

// The characters of 0x80 to 0x9F; 0 where the code has none.
constexpr std::array<char16_t, 32> kUpper{0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                          0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& out, char32_t code) {
  const auto tail = [&](unsigned shift) { out += static_cast<char>(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0U | (code >> 6U));
    tail(0);
  } else {
    out += static_cast<char>(0xE0U | (code >> 12U));
    tail(6);
    tail(0);
  }
}

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

// The symbol of a control character: the picture block repeats the order of the codes.
void AppendControlPicture(std::string& out, unsigned char c) {
  AppendUtf8(out, c == 0x7F ? 0x2421 : 0x2400U + c);
}

bool IsControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

// Unseen though they are characters: no-break space and soft hyphen.
bool IsUnseen(unsigned char c) {
  return IsControl(c) || c == 0xA0 || c == 0xAD || (c >= 0x80 && c <= 0x9F && kUpper[c - 0x80U] == 0);
}

char32_t CodeOf(unsigned char c) { return c >= 0x80 && c <= 0x9F ? kUpper[c - 0x80U] : c; }

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

std::string FromWindows1252(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (const char byte : bytes) {
    const char32_t code = CodeOf(static_cast<unsigned char>(byte));
    if (code == 0 && byte != 0) {
      out += kReplacement;
    } else {
      AppendUtf8(out, code);
    }
  }
  return out;
}

std::string ByteCell(char byte) {
  const auto c = static_cast<unsigned char>(byte);
  std::string out;
  if (IsControl(c)) {
    AppendControlPicture(out, c);
  } else if (IsUnseen(c)) {
    out = kReplacement;
  } else {
    AppendUtf8(out, CodeOf(c));
  }
  return out;
}

std::string Quoted(std::string_view bytes, std::size_t limit) {
  static constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string out = "\"";
  for (const char byte : bytes.substr(0, limit)) {
    const auto c = static_cast<unsigned char>(byte);
    if (IsUnseen(c)) {
      out.append("\\x").append(1, kHex[c >> 4U]).append(1, kHex[c & 0xFU]);
    } else {
      AppendUtf8(out, CodeOf(c));
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
