#include "examination/head.h"

#include <string>

#include "examination/mending.h"
#include "runtime/numbers.h"

namespace tremvik {

void HeadExaminer::Examine(Workpiece& work) {
  for (std::size_t rounds = work.size() + InfoOf(Kind::kCr01).fields.size(); rounds > 0; --rounds) {
    const TrialText trial = Compose(work);
    ++ledger_.result.execucoes;
    const TrialResult result = RunTrial(trial.text, trial.blocks, host_, {});
    if (result.told.empty() || ledger_.Full()) return;
    for (const Told& told : result.told) {
      if (!Mend(work, trial, told)) return;
    }
  }
}

// The passes over the whole file see every header, each without records; the run over the records sees the
// first record alone.
TrialText HeadExaminer::Compose(const Workpiece& work) const {
  TrialText trial;
  work.Append(trial);
  std::string header(static_cast<std::size_t>(InfoOf(Kind::kCr05).length), '0');
  header.replace(0, 2, InfoOf(Kind::kCr05).code);
  const std::size_t own = trial.pieces.size();
  for (std::size_t i = 0; i < headers_; ++i)
    AppendRecord(trial, header);
  if (own > 0) trial.blocks = work[*trial.pieces.front()].content + work[*trial.pieces.front()].end;
  return trial;
}

// Tells one thing and gets past it; false at the end.
bool HeadExaminer::Mend(Workpiece& work, const TrialText& trial, const Told& told) {
  const auto at = trial.PieceAt(told.finding.linha);
  if (!at) {  // a header that no master record announces
    Piece header;
    header.linha = first_header_;
    ledger_.TellAt(header, told.finding);
    return false;
  }
  const Piece before = work[*at];
  const bool master = before.kind == &InfoOf(Kind::kCr01);
  if (told.pass == RunPass::kRules && !MendField(work[*at], told.finding)) return false;
  ledger_.TellAt(before, told.finding);
  if (told.pass == RunPass::kRules) return true;
  if (master && told.pass == RunPass::kLengths) {
    work[*at].content = SoundMaster(headers_);
  } else if (master && told.finding.campo != "CR") {
    MendMaster(work[*at], *FindField(*before.kind, told.finding.campo), headers_);
  } else {
    return MendStructure(work, *at, told) != Mended::kGiveUp;
  }
  return true;
}

// False where the rules have nothing more to say: no declaration follows, so the last thing that a run tells
// is that they are fewer than announced.
bool HeadExaminer::MendField(Piece& master, const Finding& finding) {
  const FieldInfo& field = *FindField(InfoOf(Kind::kCr01), finding.campo);
  if (field.name == "Separadores") {
    master.end = kCrLf;
    return true;
  }
  const bool announces = field.name == InfoOf(Kind::kCr05).quantity.name;
  if (announces && (headers_ == 0 || !LefRigNumChr(FieldText(master.content, field), true))) return false;
  MendMaster(master, field, headers_);
  return true;
}

}  // namespace tremvik
