#include "report/concise_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "text/readable.h"

namespace tremvik::report {
namespace {

// A text in one line: its line breaks and runs of blanks become one blank.
std::string InOneLine(std::string_view text) {
  std::string joined;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\r' || c == '\n';
    if (!blank) {
      joined += c;
    } else if (!joined.empty() && joined.back() != ' ') {
      joined += ' ';
    }
  }
  if (joined.ends_with(' ')) joined.pop_back();
  return text::Visible(joined);
}

std::string Row(const FileReport& file, int linha, int coluna, std::string_view word, std::string_view text) {
  return fmt::format("{}:{}:{}: {} {}\n", text::Visible(file.arquivo), std::max(linha, 1),
                     std::max(coluna, 1), word, InOneLine(text));
}

}  // namespace

std::string ConciseFormat::Begin(const Heading& /*heading*/) { return {}; }

std::string ConciseFormat::File(const FileReport& file) {
  if (file.estado == FileVerdict::kError) return Row(file, 1, 1, "erro", file.problema);
  std::string rows;
  for (const Finding& finding : file.exame.inconsistencias)
    rows += Row(file, finding.linha, finding.coluna, finding.regra, finding.mensagem);
  for (const Unexamined& gap : file.exame.naoExaminado)
    rows += Row(file, gap.linha, 1, "não-examinado", fmt::format("até a linha {}: {}", gap.ate, gap.porque));
  for (const KnownFinding& gone : file.sumidas)
    rows += Row(file, 1, 1, "sumida", InWords(gone));
  if (file.exame.limitado) {
    const int last = file.exame.inconsistencias.empty() ? 1 : file.exame.inconsistencias.back().linha;
    rows += Row(file, last, 1, "limite", "o limite foi atingido: pode haver mais inconsistências");
  }
  return rows;
}

std::string ConciseFormat::End(const Summary& /*summary*/) { return {}; }

}  // namespace tremvik::report
