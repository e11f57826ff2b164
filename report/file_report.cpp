#include "report/file_report.h"

namespace tremvik::report {

void Summary::Add(const FileReport& file) {
  ++arquivos;
  ++(file.estado == FileVerdict::kAccepted  ? aceitos
     : file.estado == FileVerdict::kRefused ? recusados
                                            : erros);
  for (const Finding& finding : file.exame.inconsistencias) {
    ++(finding.tipo == FindingKind::kQuestion ? avisos : faltas);
    ++por_regra[finding.regra];
  }
}

}  // namespace tremvik::report
