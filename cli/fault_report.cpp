#include "cli/fault_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

#include "cli/faulty_line.h"
#include "layout/kinds.h"
#include "runtime/text.h"
#include "text/readable.h"
#include "text/style.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kLongestValue = 60;
constexpr std::size_t kNumberWidth = 5;
constexpr std::string_view kBar = " │ ";

// The field's columns, 1-based, both ends included. A fault without a column has none.
struct Columns {
  std::int64_t first = 0;
  std::int64_t last = -1;
};

Columns ColumnsOf(const Fault& fault) {
  if (fault.posicao < 1) return {};
  return {fault.posicao, std::int64_t{fault.posicao} + std::max(fault.largura, 1) - 1};
}

std::string InWords(const Columns& columns) {
  if (columns.first == columns.last) return "coluna " + std::to_string(columns.first);
  return "colunas " + std::to_string(columns.first) + " a " + std::to_string(columns.last);
}

std::string InWords(const Fault& fault) {
  std::string words = "linha " + std::to_string(fault.linha);
  if (!fault.registro.empty()) words += ", registro " + text::Visible(Utf8(fault.registro));
  if (fault.MarksLength()) {
    words += ", tamanho";
  } else if (!fault.campo.empty()) {
    words += ", campo " + fault.campo;
  }
  if (fault.posicao > 0) words += ", " + InWords(ColumnsOf(fault));
  if (!fault.valor.empty()) words += ", valor " + text::Quoted(fault.valor, kLongestValue);
  return words;
}

// The stretch of columns that is shown; a cut end takes a cell for its ellipsis.
struct Window {
  std::int64_t first = 1;
  std::int64_t last = 0;
  bool cut_before = false;
  bool cut_after = false;
};

// A line that does not fit is shown from its beginning where that holds the field or begins it early, else
// from a third of the room before the field on.
Window Around(const Columns& field, std::int64_t line_end, std::int64_t room) {
  if (line_end <= room) return {1, line_end, false, false};
  if (field.last < room || field.first <= room / 3) return {1, room - 1, false, true};
  const std::int64_t width = std::min(field.last - field.first + 1, room);
  const std::int64_t before = std::max<std::int64_t>(3, (room - width) / 3);
  Window window;
  window.first = std::clamp<std::int64_t>(field.first - before, 1, line_end - room + 2);
  window.cut_before = window.first > 1;
  window.last = std::min(line_end, window.first + room - (window.cut_before ? 2 : 1));
  window.cut_after = window.last < line_end;
  if (window.cut_after) --window.last;
  return window;
}

// "----+---10----+---20": the number of each tenth column ends at that column.
std::string Ruler(const Window& window) {
  std::string ruler;
  for (std::int64_t column = window.first; column <= window.last; ++column)
    ruler += column % 5 == 0 ? '+' : '-';
  for (std::int64_t column = (window.first + 9) / 10 * 10; column <= window.last; column += 10) {
    const std::string number = std::to_string(column);
    const auto end = static_cast<std::size_t>(column - window.first + 1);
    if (number.size() <= end) ruler.replace(end - number.size(), number.size(), number);
  }
  return ruler;
}

// The bytes from `first` on, one cell each, the field's marked.
std::string LineCells(std::string_view bytes, std::int64_t first, const Columns& field, bool colour) {
  std::string cells;
  std::string marked;
  for (std::int64_t column = first; const char byte : bytes) {
    const bool in_field = column >= field.first && column <= field.last;
    (in_field ? marked : cells) += text::ByteCell(byte);
    if (column == field.last) cells += text::Styled(marked, text::Style::kFault, colour);
    if (column == field.last) marked.clear();
    ++column;
  }
  return cells + text::Styled(marked, text::Style::kFault, colour);
}

std::string Carets(const Window& window, const Columns& field) {
  const std::int64_t first = std::max(field.first, window.first);
  const std::int64_t last = std::min(field.last, window.last);
  if (last < first) return {};
  return std::string(static_cast<std::size_t>(first - window.first), ' ') +
         std::string(static_cast<std::size_t>(last - first + 1), '^');
}

// The line that a message names at its end, the one read last; 0 where it names none.
int NamedLine(std::string_view message) {
  static constexpr std::string_view kWords = "Linha nº ";
  const auto at = message.rfind(kWords);
  int line = 0;
  if (at == std::string_view::npos) return line;
  std::from_chars(message.data() + at + kWords.size(), message.data() + message.size(), line);
  return line;
}

std::string Notes(const Fault& fault, std::string_view message) {
  std::string notes;
  const int named_line = NamedLine(message);
  if (named_line > 0 && named_line != fault.linha) {
    notes += "Nota: a mensagem diz linha " + std::to_string(named_line) +
             ", a última lida; o campo está na linha " + std::to_string(fault.linha) + ".\n";
  }
  const Columns field = ColumnsOf(fault);
  const auto named = NamedColumns(message);
  if (field.first > 0 && !named.empty() && std::ranges::find(named, fault.posicao) == named.end()) {
    notes += fmt::format("Nota: a mensagem diz posição {}; no leiaute o campo ocupa {} {}.\n",
                         fmt::join(named, " ou "), field.first == field.last ? "a" : "as", InWords(field));
  }
  return notes;
}

}  // namespace

std::vector<int> NamedColumns(std::string_view message) {
  static constexpr std::array<std::string_view, 2> kWords{"Posição", "Posições"};
  static constexpr std::array<std::string_view, 8> kJoints{" ou ", " e ou ", " e ", "_ou_",
                                                           "_e_",  "_x_",    "_x",  "/"};
  std::vector<int> columns;
  const auto skip = [&message](std::string_view word) {
    const bool found = message.starts_with(word);
    if (found) message.remove_prefix(word.size());
    return found;
  };
  while (!message.empty()) {
    if (std::ranges::none_of(kWords, skip)) {
      message.remove_prefix(1);
      continue;
    }
    skip(":");
    skip(" ");
    do {
      int column = 0;
      const auto [end, error] = std::from_chars(message.data(), message.data() + message.size(), column);
      if (error != std::errc{}) break;
      columns.push_back(column);
      message.remove_prefix(static_cast<std::size_t>(end - message.data()));
    } while (std::ranges::any_of(kJoints, skip));
  }
  return columns;
}

std::string Surplus(const Fault& fault, const std::string& path) {
  constexpr std::int64_t kLongest = 1000;
  const KindInfo* const kind = FindKind(fault.registro);
  if (!fault.MarksLength() || kind == nullptr || fault.posicao <= kind->length) return {};
  const auto line = FindLine(path, fault.linha, fault.posicao);
  const std::int64_t count = std::min<std::int64_t>(fault.largura, kLongest);
  return line ? ReadBytes(path, line->offset + fault.posicao - 1, count) : std::string();
}

std::string RenderFault(const Fault& fault, const std::string& path, std::string_view message,
                        const ReportLook& look) {
  const auto gutter = [&](std::string_view number) {
    return text::Styled(text::Padded(number, kNumberWidth, true).append(kBar), text::Style::kDim,
                        look.colour);
  };
  std::string out = text::Styled(InWords(fault), text::Style::kBold, look.colour) + "\nregra " + fault.regra;
  if (!fault.porque.empty()) out += ": " + fault.porque;
  out += "\n";
  const Columns field = ColumnsOf(fault);
  const auto room = static_cast<std::int64_t>(look.width - kNumberWidth - text::Cells(kBar));
  const auto line = FindLine(path, fault.linha, std::max<std::int64_t>(field.first, 1) + 2 * room);
  if (!line) return out + "O arquivo termina antes da linha " + std::to_string(fault.linha) + ".\n";

  const Window window = Around(field, std::max(line->length, field.last), room);
  // What stands where the line end should be is shown too; missing characters are not there to be shown.
  const std::int64_t end = fault.campo == "Separadores" ? window.last : std::min(window.last, line->length);
  const std::string bytes = ReadBytes(path, line->offset + window.first - 1, end - window.first + 1);

  const std::string_view blank = window.cut_before ? " " : "";
  out.append(gutter(""))
      .append(blank)
      .append(text::Styled(Ruler(window), text::Style::kDim, look.colour))
      .append("\n");
  out.append(gutter(std::to_string(fault.linha))).append(window.cut_before ? "…" : "");
  out.append(LineCells(bytes, window.first, field, look.colour)).append(window.cut_after ? "…\n" : "\n");
  const std::string carets = Carets(window, field);
  if (!carets.empty()) {
    out.append(gutter(""))
        .append(blank)
        .append(text::Styled(carets, text::Style::kFault, look.colour))
        .append("\n");
  }
  return out + Notes(fault, message);
}

}  // namespace tremvik::cli
