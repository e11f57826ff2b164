#include "cli/fault_report.h"

#include <algorithm>
#include <cstdint>

#include "cli/faulty_line.h"
#include "layout/kinds.h"
#include "report/line_view.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::cli {

std::string Surplus(const Fault& fault, const std::string& path) {
  constexpr std::int64_t kLongest = 1000;
  const KindInfo* const kind = FindKind(fault.registro);
  if (!fault.MarksLength() || kind == nullptr || fault.posicao <= kind->length) return {};
  const auto line = FindLine(path, fault.linha, fault.posicao);
  const std::int64_t count = std::min<std::int64_t>(fault.largura, kLongest);
  return line ? ReadBytes(path, line->offset + fault.posicao - 1, count) : std::string();
}

std::string RenderFault(const Fault& fault, const std::string& path, std::string_view message,
                        const text::Look& look) {
  const std::string registro = Utf8(fault.registro);
  const std::string valor = Utf8(fault.valor);
  const report::Place place{.linha = fault.linha,
                            .registro = registro,
                            .campo = fault.campo,
                            .coluna = fault.posicao,
                            .largura = fault.largura,
                            .valor = valor};
  std::string out = text::StyledLines(report::PlaceInWords(place), text::Style::kBold, look);
  const std::string reason = fault.porque.empty() ? "" : ": " + fault.porque;
  out += text::StyledLines("regra " + fault.regra + reason, text::Style::kPlain, look);
  const std::int64_t most = report::BytesToRender(place, look);
  report::LineBytes line;
  std::string bytes;
  if (const auto found = FindLine(path, fault.linha, most)) {
    bytes = ReadBytes(path, found->offset, most);
    line = {bytes, static_cast<std::size_t>(found->length), true};
  }
  out += report::RenderLine(place, line, look);
  std::string notes = line.exists ? report::Notes(place, message) : "";
  if (!notes.empty()) notes.pop_back();
  return notes.empty() ? out : out + text::StyledLines(notes, text::Style::kPlain, look);
}

}  // namespace tremvik::cli
