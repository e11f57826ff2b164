#include "cli/message_box.h"

#include <algorithm>
#include <vector>

#include "host/screen.h"
#include "text/readable.h"
#include "text/style.h"

namespace tremvik::cli {
namespace {

std::string Repeated(std::string_view piece, std::size_t times) {
  std::string out;
  for (std::size_t i = 0; i < times; ++i)
    out += piece;
  return out;
}

// A text may end in a line break; the box needs no empty line for it.
std::string_view WithoutLastBreak(std::string_view text) {
  return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

std::string Plain(const std::vector<std::string>& lines) {
  std::string out;
  for (const auto& line : lines)
    out.append(line).append("\n");
  return out;
}

std::string Framed(const std::vector<std::string>& lines, std::string_view title, text::Style frame,
                   const BoxLook& look) {
  std::size_t inner = title.empty() ? 0 : text::Cells(title) + 2;
  for (const auto& line : lines)
    inner = std::max(inner, text::Cells(line));
  const auto edge = [&](std::string_view text) { return text::Styled(text, frame, look.colour); };

  std::string out;
  if (title.empty()) {
    out = edge("┌" + Repeated("─", inner + 2) + "┐");
  } else {
    out = edge("┌─ ") + text::Styled(title, text::Style::kBold, look.colour) +
          edge(" " + Repeated("─", inner - text::Cells(title) - 1) + "┐");
  }
  out += "\n";
  for (const auto& line : lines)
    out += edge("│") + " " + text::Padded(line, inner) + " " + edge("│") + "\n";
  return out + edge("└" + Repeated("─", inner + 2) + "┘") + "\n";
}

}  // namespace

std::string RenderBox(std::string_view text, int style, std::string_view title, const BoxLook& look) {
  constexpr std::size_t kEdges = 4;
  const std::size_t width = look.framed ? look.width - kEdges : static_cast<std::size_t>(-1);
  const auto lines = text::Wrap(WithoutLastBreak(text), width);
  if (!look.framed) return Plain(lines);
  const text::Style frame = (style & estilo::kCritico) != 0 ? text::Style::kFault : text::Style::kPlain;
  return Framed(lines, text::Visible(title), frame, look);
}

}  // namespace tremvik::cli
