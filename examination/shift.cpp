#include "examination/shift.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "examination/workpiece.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

constexpr std::size_t kMostColumns = 4;  // a greater shift is another fault
constexpr int kMostSearches = 64;        // in one file: a search tries thousands of forms of a line

// Fields that may hold other characters than digits.
constexpr std::array kTextual{Cr05::kSemRegra.name,   Cr05::kChaveInterna.name, Cr14::kConteudo.name,
                              Cr20::kFLegal.name,     Cr20::kOcorrencia.name,   Cr28::kCodAutorizacao.name,
                              Cr05::kSeparadores.name};

bool IsNumericField(const FieldInfo& field) {
  return std::ranges::find(kTextual, field.name) == kTextual.end();
}

// Numeric fields that hold something else; of a line that ends before its time only those that are there.
std::size_t BadFields(const KindInfo& kind, std::string_view content) {
  return static_cast<std::size_t>(std::ranges::count_if(kind.fields, [&](const FieldInfo& field) {
    const std::string_view text = FieldText(content, field);
    const bool whole = text.size() == static_cast<std::size_t>(field.width);
    return whole && IsNumericField(field) && !OnlyDigits(text);
  }));
}

bool Plain(const KindInfo& kind, std::string_view content) {
  return content.size() == static_cast<std::size_t>(kind.length) && BadFields(kind, content) == 0;
}

// One way in which a line may be shifted; columns count from 0.
struct Trial {
  std::string_view content;
  const KindInfo& kind;
  bool to_the_right;
  std::size_t columns;
  std::size_t end;  // where it ends, the line's end where its length shows it

  // The line with the shift undone at column `from`: what is too much there goes, what is missing is filled.
  [[nodiscard]] std::string Undone(std::size_t from) const {
    const bool right_length = content.size() == static_cast<std::size_t>(kind.length);
    std::string line(content);
    if (to_the_right) {
      if (right_length) line.insert(end, columns, '0');
      return line.erase(from, columns);
    }
    if (right_length) line.erase(end - columns, columns);
    return line.insert(from, columns, '0');
  }
  [[nodiscard]] bool Fits(std::size_t from) const {
    return from + columns <= end && Plain(kind, Undone(from));
  }
};

// Columns at which a shift may begin: a field's, or one with a character that is no digit in a numeric field.
std::vector<std::size_t> Beginnings(const KindInfo& kind, std::string_view content) {
  std::vector<std::size_t> columns;
  for (const FieldInfo& field : kind.fields) {
    const auto first = static_cast<std::size_t>(field.position - 1);
    if (first >= content.size() || field.position <= static_cast<int>(kind.code.size())) continue;
    columns.push_back(first);
    const std::string_view text = content.substr(first, static_cast<std::size_t>(field.width));
    const auto bad = std::ranges::find_if_not(text, IsDigit);
    if (IsNumericField(field) && bad != text.end() && bad != text.begin()) {
      columns.push_back(first + static_cast<std::size_t>(bad - text.begin()));
    }
  }
  return columns;
}

// Where in the line a shift that length does not show may end: behind a field.
std::vector<std::size_t> Ends(const KindInfo& kind) {
  std::vector<std::size_t> ends;
  for (const FieldInfo& field : kind.fields) {
    ends.push_back(std::min(static_cast<std::size_t>(field.position - 1 + field.width),
                            static_cast<std::size_t>(kind.length)));
  }
  std::ranges::reverse(ends);  // the line's end is the likeliest
  return ends;
}

// A wrong character in the one field that is not plain explains as much as a shift, unless the length shows
// one or the character would be right elsewhere.
bool Explains(const Trial& trial, std::size_t from, std::size_t bad) {
  if (!trial.Fits(from)) return false;
  if (trial.content.size() != static_cast<std::size_t>(trial.kind.length)) return true;
  const auto letters = [](std::string_view text) {
    return std::ranges::count_if(text, [](char c) { return !IsDigit(c); });
  };
  const std::size_t gone = trial.to_the_right ? from : trial.end - trial.columns;
  return bad > 1 && letters(trial.content.substr(gone, trial.columns)) < static_cast<std::ptrdiff_t>(bad);
}

std::optional<Shift> Search(const Trial& trial, std::size_t bad) {
  for (const std::size_t begin : Beginnings(trial.kind, trial.content)) {
    if (!Explains(trial, begin, bad)) continue;
    std::size_t first = begin;
    std::size_t last = begin;
    while (first > trial.kind.code.size() && trial.Fits(first - 1))
      --first;
    while (trial.Fits(last + 1))
      ++last;
    const int columns = static_cast<int>(trial.columns);
    const bool to_its_end = trial.end == trial.content.size();
    return Shift{trial.to_the_right ? columns : -columns, static_cast<int>(first) + 1,
                 static_cast<int>(last) + 1, to_its_end ? 0 : static_cast<int>(trial.end)};
  }
  return {};
}

std::optional<Shift> FindLeading(std::string_view content) {
  const auto blanks = static_cast<int>(LeadingBlanks(content));
  return blanks > 0 ? std::optional(Shift{blanks, 1, 1}) : std::nullopt;
}

// Where one wrong character explains as much, no shift is looked for.
bool MayBeShifted(std::string_view content) {
  const KindInfo* const kind = FindKind(content.substr(0, 2));
  if (kind == nullptr) return true;
  const bool right_length = content.size() == static_cast<std::size_t>(kind->length);
  return BadFields(*kind, content) > (right_length ? 1U : 0U);
}

// A known shift, tried on another line.
Trial TrialOf(const KindInfo& kind, const Shift& shift, std::string_view content) {
  const std::size_t end = shift.fim == 0 ? content.size() : static_cast<std::size_t>(shift.fim);
  return {content, kind, shift.colunas > 0, static_cast<std::size_t>(std::abs(shift.colunas)), end};
}

bool Fits(const KindInfo& kind, const Shift& shift, std::string_view content) {
  const Trial trial = TrialOf(kind, shift, content);
  return trial.end <= content.size() && trial.Fits(static_cast<std::size_t>(shift.ate - 1));
}

std::string Columns(int columns) {
  const int count = std::abs(columns);
  return std::to_string(count) + (count == 1 ? " coluna" : " colunas");
}

std::string InWords(const Shift& shift, int lines) {
  const bool right = shift.colunas > 0;
  const std::string from = shift.de == shift.ate ? "da coluna " + std::to_string(shift.de)
                                                 : "de uma das colunas " + std::to_string(shift.de) + " a " +
                                                       std::to_string(shift.ate);
  std::string text = "A linha parece deslocada " + Columns(shift.colunas) + " para a " +
                     (right ? "direita" : "esquerda") + " a partir " + from;
  if (shift.fim > 0) text += " até a " + std::to_string(shift.fim);
  text += right ? ", onde algo sobra" : ", onde algo falta";
  if (lines == 2) text += "; outra linha está assim";
  if (lines > 2) text += "; outras " + std::to_string(lines - 1) + " linhas estão assim";
  return text + ".";
}

}  // namespace

std::size_t LeadingBlanks(std::string_view content) {
  const std::size_t blanks = content.find_first_not_of(" \t");
  return blanks != std::string_view::npos && HasRightLength(content.substr(blanks)) ? blanks : 0;
}

std::optional<Shift> FindShift(std::string_view content) {
  if (!MayBeShifted(content)) return {};
  const KindInfo* const kind = FindKind(content.substr(0, 2));
  if (kind == nullptr) return FindLeading(content);
  const auto length = static_cast<std::size_t>(kind->length);
  const std::size_t bad = BadFields(*kind, content);
  if (content.size() != length) {
    const bool longer = content.size() > length;
    const std::size_t columns = longer ? content.size() - length : length - content.size();
    if (columns > kMostColumns) return {};
    return Search({content, *kind, longer, columns, content.size()}, bad);
  }
  for (std::size_t columns = 1; columns <= kMostColumns; ++columns) {
    for (const std::size_t end : Ends(*kind)) {
      if (auto shift = Search({content, *kind, true, columns, end}, bad)) return shift;
      if (auto shift = Search({content, *kind, false, columns, end}, bad)) return shift;
    }
  }
  return {};
}

Shifts::Shifts(std::span<const Line> lines) {
  Collect(lines);
  if (!causes_.empty()) PartTheFew(lines);
}

void Shifts::Collect(std::span<const Line> lines) {
  int searches = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view content = lines[i].content;
    if (!MayBeShifted(content)) continue;
    auto cause = KnownCause(content);
    const auto shift = cause || searches++ >= kMostSearches ? std::nullopt : FindShift(content);
    if (shift) {
      cause = causes_.size();
      causes_.push_back({FindKind(content.substr(0, 2)), *shift, content.size()});
    }
    if (!cause) continue;
    ++causes_[*cause].linhas;
    by_line_.emplace(static_cast<int>(i) + 1, *cause);
  }
}

// The cause that a line has in common with one before it.
std::optional<std::size_t> Shifts::KnownCause(std::string_view content) const {
  const KindInfo* const kind = FindKind(content.substr(0, 2));
  for (std::size_t i = 0; i < causes_.size(); ++i) {
    if (causes_[i].kind != kind || causes_[i].length != content.size()) continue;
    const Shift& shift = causes_[i].shift;
    if (kind == nullptr ? FindLeading(content) == shift : Fits(*kind, shift, content)) return i;
  }
  return {};
}

// Lines that are few among those of their kind have a cause each.
void Shifts::PartTheFew(std::span<const Line> lines) {
  constexpr int kFew = 2;
  std::map<const KindInfo*, int> of_kind;
  for (const Line& line : lines)
    ++of_kind[FindKind(line.content.substr(0, 2))];
  for (auto& [line, at] : by_line_) {
    const Cause cause = causes_[at];
    if (cause.linhas > kFew && 2 * cause.linhas >= of_kind[cause.kind]) continue;
    at = causes_.size();
    causes_.push_back({cause.kind, cause.shift, cause.length, 1});
  }
}

bool Shifts::Holds(int linha) const {
  const auto at = by_line_.find(linha);
  if (at == by_line_.end() || causes_[at->second].kind == nullptr) return false;
  const Cause& cause = causes_[at->second];
  return cause.length > static_cast<std::size_t>(cause.kind->length) && cause.shift.de == cause.shift.ate;
}

std::optional<std::string> Shifts::Tell(int linha) {
  const auto at = by_line_.find(linha);
  if (at == by_line_.end()) return "";
  Cause& cause = causes_[at->second];
  if (std::exchange(cause.told, true)) return {};
  return InWords(cause.shift, cause.linhas);
}

std::optional<std::string> Shifts::Undone(int linha, std::string_view content) const {
  const auto at = by_line_.find(linha);
  if (!Holds(linha) || !causes_[at->second].told) return {};
  const Cause& cause = causes_[at->second];
  return TrialOf(*cause.kind, cause.shift, content).Undone(static_cast<std::size_t>(cause.shift.ate - 1));
}

}  // namespace tremvik
