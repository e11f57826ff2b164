#include "examination/examination.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "examination/causes.h"
#include "examination/declaration.h"
#include "examination/head.h"
#include "examination/ledger.h"
#include "examination/mending.h"
#include "examination/trial.h"
#include "examination/workpiece.h"

namespace tremvik {
namespace {

bool IsOfKind(const Line& line, Kind kind) { return KindOf(line.content) == &InfoOf(kind); }

// Where each declaration begins in the lines, then where the last one ends.
std::vector<std::size_t> Declarations(std::span<const Line> lines) {
  std::vector<std::size_t> begins;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (IsOfKind(lines[i], Kind::kCr05)) begins.push_back(i);
  }
  begins.push_back(lines.size());
  return begins;
}

// Where the master record stands, or the number of lines where there is none.
std::size_t MasterAt(std::span<const Line> lines) {
  const auto master =
      std::ranges::find_if(lines, [](const Line& line) { return IsOfKind(line, Kind::kCr01); });
  return static_cast<std::size_t>(master - lines.begin());
}

// True for a last line that ends before its time: what should follow it is not there.
bool Cut(const Line& line) { return line.end.empty() && !HasRightLength(line.content); }

int Number(std::size_t index) { return static_cast<int>(index) + 1; }

// The records of the file. What the import has accepted before its fault needs no second look.
void ExamineRecords(std::span<const Line> lines, const TrialResult& importer, const Host& host,
                    const ExaminationOptions& options, Ledger& ledger) {
  const std::vector<std::size_t> begins = Declarations(lines);
  const std::size_t master = MasterAt(lines);
  const bool strayed = master < lines.size() && master > begins.front();
  const std::size_t accepted =
      importer.ended_in == RunPass::kRules ? static_cast<std::size_t>(importer.ultima_linha) : 0;
  if (begins.front() >= accepted) {
    Workpiece head = strayed ? Workpiece(lines.subspan(master, 1), Number(master))
                             : Workpiece(lines.first(begins.front()), 1);
    HeadExaminer(host, ledger, begins.size() - 1, Number(begins.front())).Examine(head);
  }
  DeclarationExaminer examiner(host, ledger);
  for (std::size_t i = 0; i + 1 < begins.size(); ++i) {
    const std::size_t begin = begins[i];
    const std::size_t end = begins[i + 1];
    if (ledger.Full()) {
      ledger.result.limitado = true;
      return ledger.NotExamined(Number(begin), static_cast<int>(lines.size()),
                                "O limite foi atingido antes.");
    }
    if (end < accepted) {
      examiner.Pass(lines[begin].content);
      continue;
    }
    Workpiece work(lines.subspan(begin, end - begin), Number(begin));
    if (strayed && master > begin && master < end) work.TakeOut(master - begin);
    if (end == lines.size() && Cut(lines.back())) work.cut = true;
    examiner.Examine(work);
    if (options.progresso) options.progresso(i + 1, begins.size() - 1);
  }
}

// What the import itself tells: its question, its fault, or all that its box of quantities holds.
std::vector<Finding> OfImporter(const TrialResult& run, bool responder_sim) {
  std::vector<Finding> own;
  for (const Told& told : run.told) {
    if (told.finding.tipo == FindingKind::kQuestion && responder_sim) continue;
    own.push_back(told.finding);
    if (told.pass != RunPass::kQuantities) break;
  }
  return own;
}

// What a run tells of the line where a cause shows, when its own first fault is another one.
Finding FindingAt(const Line& line, const Host& host) {
  const bool right = HasRightLength(line.content);
  std::string text = right ? SoundMaster(0) : std::string(line.content);
  TrialResult run = RunTrial(text.append(kCrLf), std::string(line.content) + Separators(line), host, {});
  return run.told.empty() ? run.EndFinding() : std::move(run.told.front().finding);
}

// Causes that are taken away one after the other: each of the known ones, once.
constexpr int kMostCauses = 8;

void TellCause(const Cause& cause, std::span<const Line> lines, const TrialResult& run, const Host& host,
               Ledger& ledger) {
  Piece place;
  place.linha = cause.linha;
  const auto fault = std::ranges::find_if(
      run.told, [](const Told& told) { return told.finding.tipo == FindingKind::kFault; });
  const bool told = fault != run.told.end() && fault->finding.linha == cause.linha;
  if (!told) ++ledger.result.execucoes;
  Finding finding = told ? fault->finding : FindingAt(lines[static_cast<std::size_t>(cause.linha) - 1], host);
  finding.porque = cause.porque;
  ledger.TellAt(place, std::move(finding));
}

TrialResult Run(std::string_view bytes, const Host& host) {
  TrialResult run = RunTrial(bytes, bytes, host, {});
  const bool silent = std::ranges::none_of(
      run.told, [](const Told& told) { return told.finding.tipo == FindingKind::kFault; });
  if (!run.accepted() && silent) run.told.push_back({run.EndFinding(), run.ended_in});
  return run;
}

void Count(std::string_view bytes, std::span<const Line> lines, Ledger& ledger) {
  ledger.result.registros = static_cast<int>(CountLines(bytes));
  ledger.result.declaracoes = static_cast<int>(Declarations(lines).size()) - 1;
}

// Finds the causes of many faults and takes them away, then examines what is left of a refused file.
void Examine(std::string_view bytes, TrialResult run, const Host& host, const ExaminationOptions& options,
             Ledger& ledger) {
  std::string repaired;
  std::vector<Line> lines = SplitLines(bytes, kMostLines);
  for (int causes = 0; causes < kMostCauses && !run.accepted(); ++causes) {
    auto cause = FindCause(bytes);
    if (!cause) break;
    TellCause(*cause, lines, run, host, ledger);
    if (!cause->repaired) return ledger.NotExamined(1, static_cast<int>(CountLines(bytes)), cause->porque);
    repaired = std::move(*cause->repaired);
    bytes = repaired;
    lines = SplitLines(bytes, kMostLines);
    run = Run(bytes, host);
    ++ledger.result.execucoes;
  }
  ledger.shifts = Shifts(lines);
  for (const Told& told : run.told)
    ledger.Tell(told.finding);
  Count(bytes, lines, ledger);
  ledger.NotExamined(static_cast<int>(lines.size()) + 1, ledger.result.registros,
                     "Um arquivo tem no máximo 32.766 registros.");
  if (run.accepted() || lines.empty()) return;
  // The import has told of a last line without an end, if it came that far.
  const bool at_end = run.ended_in == RunPass::kRules && run.ultima_linha == static_cast<int>(lines.size());
  if (at_end) lines.back().end = kCrLf;
  const bool cut = Cut(lines.back());
  ExamineRecords(lines, run, host, options, ledger);
  if (cut) {
    ledger.Because(static_cast<int>(lines.size()),
                   "O arquivo termina no meio desta linha: falta o resto dele.");
  }
}

// Of an accepted file only its questions are left to tell.
void TakeAccepted(const TrialResult& run, Ledger& ledger) {
  for (const Told& told : run.told)
    ledger.Tell(told.finding);
  ledger.result.registros = run.ultima_linha - 1;  // the read that met the end of the file counts
  ledger.result.declaracoes = run.declaracoes;
}

}  // namespace

Examination Examinar(std::string_view bytes, const Host& host, const ExaminationOptions& options) {
  Ledger ledger(options.limite);
  TrialResult run = Run(bytes, host);
  ledger.result.execucoes = 1;
  const std::vector<Finding> importer = OfImporter(run, options.responder_sim);
  if (importer.empty()) ledger.result.estado = FileState::kAccepted;
  if (run.accepted() && (options.todas || importer.empty())) {
    TakeAccepted(run, ledger);
  } else if (options.todas) {
    Examine(bytes, std::move(run), host, options, ledger);
  } else {
    Count(bytes, SplitLines(bytes, kMostLines), ledger);
  }
  ledger.Close(importer);
  return std::move(ledger.result);
}

}  // namespace tremvik
