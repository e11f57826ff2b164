#include "examination/ledger.h"

#include <algorithm>
#include <utility>

namespace tremvik {
namespace {

// The message with the file's line where it ends in that of the trial: "Linha 7", "Linha nº 7".
std::string Renumbered(std::string mensagem, int trial_line, int line) {
  for (const std::string_view before : {"inha ", "nº "}) {
    const std::string said = std::string(before) + std::to_string(trial_line);
    if (!mensagem.ends_with(said)) continue;
    mensagem.replace(mensagem.size() - said.size(), said.size(), std::string(before) + std::to_string(line));
    break;
  }
  return mensagem;
}

}  // namespace

void Ledger::Tell(Finding finding) {
  const auto key = std::pair(finding.linha, finding.regra);
  if (told_.contains(key)) return;
  if (Full()) {
    result.limitado = true;
    return;
  }
  if (finding.tipo == FindingKind::kFault) {
    const auto cause = shifts.Tell(finding.linha);
    if (!cause) return;
    if (!finding.porque.empty() && !cause->empty()) finding.porque += ". ";
    finding.porque += *cause;
  }
  told_.insert(key);
  result.inconsistencias.push_back(std::move(finding));
}

void Ledger::TellAt(const Piece& piece, Finding finding) {
  finding.mensagem = Renumbered(std::move(finding.mensagem), finding.linha, piece.linha);
  finding.linha = piece.linha;
  Tell(std::move(finding));
}

void Ledger::NotExamined(int from, int to, std::string porque) {
  if (from <= to) result.naoExaminado.push_back({from, to, std::move(porque)});
}

void Ledger::LeftOut(const Workpiece& work, std::size_t parent, const std::vector<std::size_t>& records) {
  if (records.empty()) return;
  NotExamined(work[records.front()].linha, work[records.back()].linha,
              "Dependem do registro da linha " + std::to_string(work[parent].linha) + ", que foi recusado.");
}

void Ledger::Because(int linha, std::string_view porque) {
  for (Finding& finding : result.inconsistencias) {
    if (finding.linha == linha) finding.porque = porque;
  }
}

void Ledger::Close(const std::vector<Finding>& importer) {
  for (const Finding& own : importer) {
    const auto same = std::ranges::find_if(result.inconsistencias, [&](const Finding& finding) {
      return finding.linha == own.linha && finding.regra == own.regra;
    });
    if (same != result.inconsistencias.end()) {
      same->doImportador = true;
    } else {
      result.inconsistencias.push_back(own);
      result.inconsistencias.back().doImportador = true;
    }
  }
  std::ranges::stable_sort(result.inconsistencias, {}, &Finding::linha);
  std::ranges::stable_sort(result.naoExaminado, {}, &Unexamined::linha);
}

}  // namespace tremvik
