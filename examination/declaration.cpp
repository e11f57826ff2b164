#include "examination/declaration.h"

#include <utility>

#include "examination/mending.h"

namespace tremvik {
namespace {

constexpr int kAttempts = 2;  // to get past one field of a header

// What orders headers: IE and Ref.
std::string KeyOf(std::string_view header) {
  const KindInfo& kind = InfoOf(Kind::kCr05);
  return std::string(FieldText(header, *FindField(kind, "IE")))
      .append(FieldText(header, *FindField(kind, "Ref")));
}

}  // namespace

void DeclarationExaminer::Pass(std::string_view header) {
  previous_ = WithoutQuantities(InfoOf(Kind::kCr05), std::string(header));
}

void DeclarationExaminer::Examine(Workpiece& work) {
  alone_ = false;
  mended_.clear();
  // Each round gets past a record, its shift or a field of the header, so there are no more of them than
  // these.
  for (std::size_t rounds = 2 * work.size() + kAttempts * work[0].kind->fields.size(); rounds > 0; --rounds) {
    UndoShifts(work);
    const TrialText trial = Compose(work);
    ++ledger_.result.execucoes;
    const TrialResult result = RunTrial(trial.text, trial.blocks, host_, suppressed_);
    if (result.accepted() && !work[0].tainted) Pass(work[0].content);
    if (!Mend(work, trial, result)) break;
    if (result.accepted() || ledger_.Full()) return;
  }
  const Piece& header = work[0];
  ledger_.NotExamined(header.linha, work[work.size() - 1].linha,
                      "O cabeçalho da linha " + std::to_string(header.linha) +
                          " não permite examinar o restante da declaração.");
}

// Lines whose shift was told stand right from now on.
void DeclarationExaminer::UndoShifts(Workpiece& work) {
  if (ledger_.shifts.empty()) return;
  for (std::size_t i = 0; i < work.size(); ++i) {
    if (work[i].restored || work[i].kind == nullptr) continue;
    auto content = ledger_.shifts.Undone(work[i].linha, work[i].content);
    work[i].restored = content.has_value();
    if (content) work[i].content = std::move(*content);
  }
}

TrialText DeclarationExaminer::Compose(const Workpiece& work) const {
  TrialText trial;
  const bool with_previous = !alone_ && !previous_.empty();
  AppendRecord(trial, SoundMaster(with_previous ? 2 : 1));
  if (with_previous) AppendRecord(trial, previous_);
  work.Append(trial);
  return trial;
}

// Tells what a trial has found and gets past it; false where nothing does.
bool DeclarationExaminer::Mend(Workpiece& work, const TrialText& trial, const TrialResult& result) {
  bool found = result.accepted();
  for (const Told& told : result.told) {
    if (told.finding.tipo == FindingKind::kQuestion) {
      if (const auto at = trial.PieceAt(told.finding.linha)) ledger_.TellAt(work[*at], told.finding);
      continue;
    }
    if (!MendOne(work, trial, result, told)) return false;
    found = true;
  }
  return found || MendError(work, trial, result);
}

bool DeclarationExaminer::MendOne(Workpiece& work, const TrialText& trial, const TrialResult& result,
                                  const Told& told) {
  const auto at = trial.PieceAt(told.finding.linha);
  if (!at) return !std::exchange(alone_, true);  // the header before is refused beside this one
  const Piece before = work[*at];
  if (!before.restored && ledger_.shifts.Holds(before.linha)) {  // the next trial has it where it should be
    ledger_.TellAt(before, told.finding);
    return true;
  }
  const bool read = *at == 0 || result.ultima_linha > told.finding.linha;
  const auto unread = read ? std::vector<std::size_t>() : work.Descendants(*at);
  const std::size_t last = trial.PieceAt(result.ultima_linha).value_or(*at);
  const Mended mended = told.pass == RunPass::kRules
                            ? MendRule(work, *at, last, told.finding, result, suppressed_)
                            : MendStructure(work, *at, told);
  if (mended != Mended::kFollows) ledger_.TellAt(before, told.finding);
  if (work[*at].out) ledger_.LeftOut(work, *at, unread);
  if (*at != 0) return true;
  if (told.finding.campo == "IE") alone_ = true;
  if (told.finding.campo == "IE" && KeyOf(before.content) == KeyOf(previous_)) return false;
  return mended != Mended::kGiveUp && ++mended_[told.finding.campo] <= kAttempts;
}

// A run-time error names no field: the record read last goes out.
bool DeclarationExaminer::MendError(Workpiece& work, const TrialText& trial, const TrialResult& result) {
  const auto at = trial.PieceAt(result.ultima_linha);
  if (result.outcome.estado != Outcome::Estado::kErro || !at || *at == 0) return false;
  ledger_.TellAt(work[*at], result.EndFinding());
  work.TakeOutAnnounced(*at);
  return true;
}

}  // namespace tremvik
