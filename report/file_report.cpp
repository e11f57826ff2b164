#include "report/file_report.h"

#include <algorithm>
#include <array>
#include <functional>

namespace tremvik::report {

std::string_view NameOf(FileVerdict verdict) {
  static constexpr std::array<std::string_view, 3> kNames{"aceito", "recusado", "erro"};
  return kNames.at(static_cast<std::size_t>(verdict));
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
  if (findings.empty()) return;
  ++com_inconsistencias;
  const auto place = std::ranges::upper_bound(por_arquivo, findings.size(), std::ranges::greater(),
                                              &FileCount::inconsistencias);
  por_arquivo.insert(place, {file.arquivo, findings.size()});
  if (por_arquivo.size() > kMostFiles) por_arquivo.pop_back();
}

}  // namespace tremvik::report
