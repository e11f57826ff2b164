#include "report/line_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "input/text_reader.h"
#include "layout/kinds.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

using text::Style;

constexpr std::size_t kLongestValue = 60;
constexpr std::size_t kNumberWidth = 5;
constexpr std::string_view kBar = " │ ";

std::int64_t Room(const text::Look& look) {
  return static_cast<std::int64_t>(look.width - kNumberWidth - text::Cells(kBar));
}

std::string InWords(const Columns& columns) {
  if (columns.first == columns.last) return "coluna " + std::to_string(columns.first);
  return "colunas " + std::to_string(columns.first) + " a " + std::to_string(columns.last);
}

bool IsHexadecimal(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'); }

// True for a character that a place's field may hold; any will do where no character is wrong by itself.
bool MayStandIn(const Place& place, char c) {
  if (place.MarksLength() || place.campo == Cr20::kFLegal.name || place.campo == Cr20::kOcorrencia.name)
    return true;
  if (place.campo == Cr05::kChaveInterna.name) return IsHexadecimal(c);
  if (place.campo == Cr28::kCodAutorizacao.name) return IsDigit(c) || (c >= 'a' && c <= 'z');
  return IsDigit(c);
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

bool IsIn(const std::vector<Columns>& marks, std::int64_t column) {
  return std::ranges::any_of(marks,
                             [column](const Columns& c) { return column >= c.first && column <= c.last; });
}

// The bytes from column `first` on, one cell each, the marked ones in colour.
std::string LineCells(std::string_view bytes, std::int64_t first, const std::vector<Columns>& marks,
                      bool colour) {
  std::string cells;
  std::string piece;
  bool marked = false;
  const auto end_piece = [&] {
    cells += text::Styled(piece, marked ? Style::kFault : Style::kPlain, colour);
    piece.clear();
  };
  for (std::int64_t column = first; const char byte : bytes) {
    if (IsIn(marks, column) != marked) end_piece();
    marked = IsIn(marks, column++);
    piece += text::ByteCell(byte);
  }
  end_piece();
  return cells;
}

std::string Carets(const Window& window, const std::vector<Columns>& marks) {
  std::string carets;
  for (std::int64_t column = window.first; column <= window.last; ++column)
    carets += IsIn(marks, column) ? '^' : ' ';
  return std::string(TrimEnd(carets));
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

}  // namespace

Place PlaceOf(const Finding& finding) {
  return {.linha = finding.linha,
          .registro = finding.registro,
          .campo = finding.campo,
          .coluna = finding.coluna,
          .largura = finding.largura,
          .valor = finding.valor};
}

LineBytes LineFinder::Find(int linha) {
  if (linha < line_) at_ = 0, line_ = 1;
  for (; at_ < bytes_.size() && line_ < linha; ++line_) {
    at_ += UpToLineEnd(bytes_.substr(at_)).size();
    at_ += bytes_.substr(at_).starts_with(kCrLf) ? kCrLf.size() : 1;
    at_ = std::min(at_, bytes_.size());
  }
  if (linha < 1 || at_ == bytes_.size()) return {};
  const std::string_view rest = bytes_.substr(at_);
  return {rest, UpToLineEnd(rest).size(), true};
}

Columns FieldColumns(const Place& place) {
  if (place.coluna < 1) return {};
  return {place.coluna, std::int64_t{place.coluna} + std::max(place.largura, 1) - 1};
}

std::vector<Columns> WrongColumns(const Place& place, const LineBytes& line) {
  const Columns field = FieldColumns(place);
  if (field.first < 1) return {};
  const auto at = static_cast<std::size_t>(field.first - 1);
  const std::string_view value = line.bytes.substr(0, line.content).substr(std::min(at, line.content));
  std::vector<Columns> wrong;
  for (std::int64_t column = field.first;
       const char c : Left(value, static_cast<std::size_t>(place.largura))) {
    if (!MayStandIn(place, c)) {
      if (wrong.empty() || wrong.back().last != column - 1) wrong.push_back({column, column});
      wrong.back().last = column;
    }
    ++column;
  }
  return wrong.empty() || place.campo == Cr01::kSeparadores.name ? std::vector{field} : wrong;
}

std::string PlaceInWords(const Place& place) {
  std::string words = "linha " + std::to_string(place.linha);
  if (!place.registro.empty()) words.append(", registro ").append(text::Visible(place.registro));
  if (place.MarksLength()) {
    words += ", tamanho";
  } else if (!place.campo.empty()) {
    words.append(", campo ").append(place.campo);
  }
  if (place.coluna > 0) words += ", " + InWords(FieldColumns(place));
  if (!place.valor.empty()) words += ", valor " + text::QuotedValue(place.valor, kLongestValue);
  return words;
}

std::int64_t BytesToRender(const Place& place, const text::Look& look) {
  return std::max(place.coluna, 1) + 2 * Room(look);
}

std::string RenderLine(const Place& place, const LineBytes& line, const text::Look& look) {
  if (!line.exists) return "O arquivo termina antes da linha " + std::to_string(place.linha) + ".\n";
  const Columns field = FieldColumns(place);
  const auto content = static_cast<std::int64_t>(line.content);
  const Window window = Around(field, std::max(content, field.last), Room(look));
  // What stands where the line end should be is shown too; missing characters are not there to be shown.
  const std::int64_t end =
      place.campo == Cr01::kSeparadores.name ? window.last : std::min(window.last, content);
  const std::string_view bytes =
      Mid(line.bytes, static_cast<std::size_t>(window.first),
          static_cast<std::size_t>(std::max<std::int64_t>(end - window.first + 1, 0)));
  const std::vector<Columns> marks = WrongColumns(place, line);
  const std::string_view blank = window.cut_before ? " " : "";
  const auto row = [&](std::string_view number, std::string_view cells, Style style) {
    return text::Styled(text::Padded(number, kNumberWidth, true).append(kBar), Style::kDim, look.colour)
        .append(text::Styled(cells, style, look.colour))
        .append("\n");
  };
  std::string out = row("", std::string(blank) + Ruler(window), Style::kDim);
  out += row(std::to_string(place.linha),
             (window.cut_before ? "…" : "") + LineCells(bytes, window.first, marks, look.colour) +
                 (window.cut_after ? "…" : ""),
             Style::kPlain);
  const std::string carets = Carets(window, marks);
  if (!carets.empty()) out += row("", std::string(blank) + carets, Style::kFault);
  return out;
}

std::string Notes(const Place& place, std::string_view message) {
  std::string notes;
  const int named_line = NamedLine(message);
  if (named_line > 0 && named_line != place.linha) {
    notes += fmt::format("Nota: a mensagem diz linha {}, a última lida; o campo está na linha {}.\n",
                         named_line, place.linha);
  }
  const Columns field = FieldColumns(place);
  const auto named = NamedColumns(message);
  if (field.first > 0 && !named.empty() && std::ranges::find(named, place.coluna) == named.end()) {
    notes += fmt::format("Nota: a mensagem diz posição {}; no leiaute o campo ocupa {} {}.\n",
                         fmt::join(named, " ou "), field.first == field.last ? "a" : "as", InWords(field));
  }
  return notes;
}

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

}  // namespace tremvik::report
