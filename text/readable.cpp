#include "text/readable.h"

#include <fmt/format.h>
#include <utf8.h>
#include <utf8/unchecked.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "runtime/text.h"

namespace tremvik::text {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

constexpr unsigned kNoBreakSpace = 0xA0;  // a field's cell must not look like a blank one

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

bool IsControl(char32_t code) { return code < 0x20 || code == 0x7F; }

// The symbol of a control character: the block from U+2400 on repeats the order of the codes.
void AppendControlPicture(std::string& out, char32_t code) {
  utf8::append(code == 0x7F ? U'\u2421' : U'\u2400' + code, std::back_inserter(out));
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
    out.emplace_back(head);
  } while (!line.empty());
}

}  // namespace

bool IsUnseen(char32_t code) {
  struct Range {
    char32_t first, last;
  };
  // Upper controls; soft hyphen, joiners and marks of direction, line and paragraph ends, overrides and
  // isolates of direction, byte-order marks, annotations, tags.
  static constexpr std::array kRanges{Range{0x80, 0x9F},      Range{0xAD, 0xAD},     Range{0x61C, 0x61C},
                                      Range{0x180E, 0x180E},  Range{0x200B, 0x200F}, Range{0x2028, 0x202E},
                                      Range{0x2060, 0x206F},  Range{0xFEFF, 0xFEFF}, Range{0xFFF9, 0xFFFB},
                                      Range{0xE0000, 0xE007F}};
  return std::ranges::any_of(kRanges, [code](Range r) { return code >= r.first && code <= r.last; });
}

std::size_t Cells(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

std::vector<std::string> Wrap(std::string_view text, std::size_t width) {
  std::vector<std::string> out;
  for (;;) {
    const std::size_t end = text.find_first_of("\r\n");
    WrapLine(Visible(text.substr(0, end)), width, out);
    if (end == std::string_view::npos) return out;
    text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
  }
}

std::string Visible(std::string_view text) {
  const std::string valid = utf8::replace_invalid(text);
  std::string out;
  for (auto at = valid.begin(); at != valid.end();) {
    const auto begin = at;
    const char32_t code = utf8::unchecked::next(at);
    if (IsControl(code)) {
      AppendControlPicture(out, code);
    } else if (IsUnseen(code)) {
      out += kReplacement;
    } else {
      out.append(begin, at);
    }
  }
  return out;
}

std::string InQuotes(std::string_view text) { return "\"" + Visible(text) + "\""; }

std::string ByteCell(char byte) {
  return static_cast<unsigned char>(byte) == kNoBreakSpace ? std::string(kReplacement)
                                                           : Visible(Utf8({&byte, 1}));
}

std::string Quoted(std::string_view bytes, std::size_t limit) {
  return QuotedValue(Utf8(bytes.substr(0, limit + 1)), limit);
}

std::string QuotedValue(std::string_view utf8, std::size_t limit) {
  const std::string valid = utf8::replace_invalid(utf8);
  std::string out = "\"";
  std::size_t shown = 0;
  for (auto at = valid.begin(); at != valid.end(); ++shown) {
    if (shown == limit) return out + "…\"";
    const auto begin = at;
    const auto code = static_cast<std::uint32_t>(utf8::unchecked::next(at));
    if (code < 0x100 && (IsControl(code) || code == kNoBreakSpace || IsUnseen(code))) {
      fmt::format_to(std::back_inserter(out), "\\x{:02X}", code);
    } else {
      out += Visible({begin, at});
    }
  }
  return out + "\"";
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

}  // namespace tremvik::text
