#include "report/file_report.h"

#include <algorithm>
#include <array>
#include <functional>

#include "text/readable.h"

namespace tremvik::report {

std::string_view NameOf(FileVerdict verdict) {
  static constexpr std::array<std::string_view, 3> kNames{"aceito", "recusado", "erro"};
  return kNames.at(static_cast<std::size_t>(verdict));
}

std::string InWords(const KnownFinding& known) {
  constexpr std::size_t kLongestValue = 60;
  std::string words = known.regra;
  const auto add = [&words](std::string_view name, const std::string& text) {
    if (!text.empty()) words.append(name).append(text);
  };
  add(", registro ", text::Visible(known.registro));
  add(", campo ", text::Visible(known.campo));
  if (!known.valor.empty()) add(", valor ", text::QuotedValue(known.valor, kLongestValue));
  add(", IE ", text::Visible(known.ie));
  add(", referência ", text::Visible(known.referencia));
  if (known.vezes > 1) words += " (" + text::Count(known.vezes, "vez", "vezes") + ")";
  return words;
}

void Summary::Add(const FileReport& file) {
  ++arquivos;
  ++(file.estado == FileVerdict::kAccepted  ? aceitos
     : file.estado == FileVerdict::kRefused ? recusados
                                            : erros);
  const auto& findings = file.exame.inconsistencias;
  for (const Finding& finding : findings) {
    ++(finding.tipo == FindingKind::kQuestion ? avisos : faltas);
    ++por_regra[finding.regra];
  }
  conhecidas += file.conhecidas;
  for (const KnownFinding& gone : file.sumidas)
    sumidas += gone.vezes;
  if (findings.empty()) return;
  ++com_inconsistencias;
  const auto place = std::ranges::upper_bound(por_arquivo, findings.size(), std::ranges::greater(),
                                              &FileCount::inconsistencias);
  por_arquivo.insert(place, {file.arquivo, findings.size()});
  if (por_arquivo.size() > kMostFiles) por_arquivo.pop_back();
}

}  // namespace tremvik::report
