#include "examination/mending.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "examination/order.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

// The kind whose records the field announces, or null.
const KindInfo* Announced(const KindInfo& parent, std::string_view field) {
  const auto child = std::ranges::find_if(kKinds, [&](const KindInfo& kind) {
    return kind.parent == parent.kind && kind.quantity.name == field;
  });
  return child == kKinds.end() ? nullptr : &*child;
}

// What a record lacks now, its quantities and its sum show.
void TaintParent(Workpiece& work, std::size_t at) {
  const Piece& piece = work[at];
  if (piece.parent && *piece.parent != 0) work[*piece.parent].tainted = true;
}

Mended TakeOut(Workpiece& work, std::size_t at, Mended what) {
  TaintParent(work, at);
  work.TakeOutAnnounced(at);
  return what;
}

std::string Padded(std::string_view digits, int width) {
  return std::string(static_cast<std::size_t>(width) - digits.size(), '0').append(digits);
}

// A quantity that is no plain number is written right; where it is one, its records are what is refused.
void MendQuantity(Workpiece& work, std::size_t at, const FieldInfo& field, Kind child) {
  const bool plain = OnlyDigits(FieldText(work[at].content, field));
  if (plain) {
    for (const std::size_t index : work.Children(at, child))
      work.TakeOut(index);
  }
  work.Announce(at, child);
}

std::string Neutral(const Piece& header, const FieldInfo& field) {
  const bool fixed_regime = Val(FieldText(header.content, *FindField(*header.kind, "RegTrib"))) == 2;
  if (field.name == "RefInicial" && fixed_regime) {
    return std::string(FieldText(header.content, *FindField(*header.kind, "Ref")));
  }
  if (field.name == "ICMSFixPer" && fixed_regime) return Padded("1", field.width);
  if (field.name == "ChaveInterna" || field.name == "IE") return Padded("1", field.width);
  return Padded("", field.width);
}

bool Accepts(std::string_view registration) {
  return OnlyDigits(registration) && registration.find_first_not_of('0') != std::string_view::npos;
}

// A registration number keeps its digits where it has them and counts as valid from now on.
void MendRegistration(Piece& header, const FieldInfo& field, Suppressed& suppressed) {
  if (!Accepts(FieldText(header.content, field))) {
    SetFieldText(header.content, field, Neutral(header, field));
  }
  suppressed.documentos.emplace(FieldText(header.content, field));
}

void SuppressHeld(const Piece& header, Suppressed& suppressed) {
  const auto text = [&](std::string_view name) {
    return FieldText(header.content, *FindField(*header.kind, name));
  };
  suppressed.declaracoes.insert(std::string(Mascara(kMascaraIE, text("IE"))).append(DiaVinte(text("Ref"))));
}

Mended MendHeader(Workpiece& work, std::size_t at, const FieldInfo& field, const TrialResult& result,
                  Suppressed& suppressed) {
  Piece& header = work[at];
  if (const KindInfo* const child = Announced(*header.kind, field.name)) {
    MendQuantity(work, at, field, child->kind);
    return Mended::kTell;
  }
  if (field.name == "Ref" && result.held) {
    SuppressHeld(header, suppressed);
    return Mended::kTell;
  }
  if (field.name == "Ref" || field.name == "RegTrib") return Mended::kGiveUp;
  if (field.name == "IE" || field.name == "CNPJ") {
    const bool out_of_order = Accepts(FieldText(header.content, field)) && !result.invalid_document;
    if (out_of_order) return Mended::kTell;
    header.tainted = header.tainted || field.name == "IE";
    MendRegistration(header, field, suppressed);
  } else {
    SetFieldText(header.content, field, Neutral(header, field));
  }
  return Mended::kTell;
}

// A record stands where one of another kind was due: the first of that kind further on is the one misplaced.
std::size_t Misplaced(const Workpiece& work, std::size_t at, std::string_view due) {
  for (std::size_t i = at + 1; i < work.size(); ++i) {
    if (!work[i].out && work[i].kind != nullptr && work[i].kind->code == due) return i;
  }
  return at;
}

bool FollowsFromTaint(const Workpiece& work, std::size_t at, const Finding& finding) {
  const Piece& piece = work[at];
  const bool shows_children = finding.campo == "Valor" || Announced(*piece.kind, finding.campo) != nullptr;
  if (piece.suspect || (piece.tainted && shows_children)) return true;
  return finding.campo == "CodAutorizacao" && work[0].tainted;  // it is made of the header's registration
}

// No rule looks at what these hold, so any text of the right length will do.
bool HasFreeContent(Kind kind) { return kind == Kind::kCr14 || kind == Kind::kCr18 || kind == Kind::kCr30; }

Mended MendLine(Workpiece& work, std::size_t at, bool unknown_code) {
  Piece& piece = work[at];
  if (piece.kind == nullptr) {
    work.lost.push_back(at);
    work.TakeOut(at);
  } else if (unknown_code) {
    piece.content.replace(0, piece.kind->code.size(), piece.kind->code);
  } else if (piece.kind->kind == Kind::kCr05) {
    return Mended::kGiveUp;
  } else if (HasFreeContent(piece.kind->kind)) {
    piece.content.resize(static_cast<std::size_t>(piece.kind->length), ' ');
    if (piece.kind->kind == Kind::kCr14) work.Announce(at, Kind::kCr18);
  } else {
    return TakeOut(work, at, Mended::kTell);
  }
  return Mended::kTell;
}

// Of records too many, those that repeat the one before them go out.
void TakeOutRepeated(Workpiece& work, const std::vector<std::size_t>& children, int too_many) {
  for (std::size_t i = 1; i < children.size() && too_many > 0; ++i) {
    if (work[children[i]].content != work[children[i - 1]].content) continue;
    work.TakeOut(children[i]);
    --too_many;
  }
}

// Whether the record `lost`, whose kind nothing told, may be one of `kind` under the record `parent`.
bool MayStandUnder(const Workpiece& work, std::size_t lost, std::size_t parent, const KindInfo& kind) {
  if (lost < parent || work[lost].content.size() != static_cast<std::size_t>(kind.length)) return false;
  for (std::size_t i = parent + 1; i < lost; ++i) {
    if (work[i].kind == work[parent].kind) return false;
  }
  return true;
}

// True when so many records of a kind are missing because others were lost, which then explain nothing more.
bool Explained(Workpiece& work, std::size_t parent, const KindInfo& kind, int missing) {
  if (work.cut) return true;
  const auto rest = std::stable_partition(work.lost.begin(), work.lost.end(), [&](std::size_t lost) {
    return !MayStandUnder(work, lost, parent, kind);
  });
  if (work.lost.end() - rest < missing) return false;
  work.lost.erase(rest, rest + missing);
  return true;
}

// A quantity gets what is there. Records that were lost before are what it misses.
Mended MendCount(Workpiece& work, std::size_t at, const KindInfo& child) {
  const int announced = IntVal(FieldText(work[at].content, child.quantity));
  const auto children = work.Children(at, child.kind);
  const int missing = announced - static_cast<int>(children.size());
  TakeOutRepeated(work, children, -missing);
  work.Announce(at, child.kind);
  work[at].tainted = work[at].tainted || at != 0;
  return missing > 0 && Explained(work, at, child, missing) ? Mended::kFollows : Mended::kTell;
}

}  // namespace

Mended MendStructure(Workpiece& work, std::size_t at, const Told& told) {
  if (told.pass == RunPass::kLengths) return MendLine(work, at, told.finding.campo == "CR");
  const KindInfo& kind = *work[at].kind;
  if (const KindInfo* const child = Announced(kind, told.finding.campo)) return MendCount(work, at, *child);
  if (kind.kind == Kind::kCr01) {
    work.TakeOut(at);
    return Mended::kTell;
  }
  for (const std::size_t orphan : work.Children(work[at].parent, kind.kind))
    work.TakeOut(orphan);
  return Mended::kTell;
}

Mended MendRule(Workpiece& work, std::size_t at, std::size_t last, const Finding& finding,
                const TrialResult& result, Suppressed& suppressed) {
  const Piece& piece = work[at];
  if (finding.registro != piece.kind->code) {
    return TakeOut(work, Misplaced(work, at, finding.registro), Mended::kTell);
  }
  const FieldInfo* const field = FindField(*piece.kind, finding.campo);
  const KindInfo* const child = Announced(*piece.kind, finding.campo);
  if ((child != nullptr || finding.campo == "Separadores") && work[last].end != kCrLf) {
    work[last].end = kCrLf;
    return Mended::kTell;
  }
  if (piece.kind->kind == Kind::kCr05) return MendHeader(work, at, *field, result, suppressed);
  if (FollowsFromTaint(work, at, finding)) return TakeOut(work, at, Mended::kFollows);
  if (child != nullptr && !OnlyDigits(FieldText(piece.content, *field))) {
    work.Announce(at, child->kind);
    return Mended::kTell;
  }
  const std::size_t out = OutOfPlace(work, at, finding.campo);
  if (out != at) work[at].suspect = true;
  return TakeOut(work, out, Mended::kTell);
}

std::string SoundMaster(std::size_t headers) {
  constexpr std::size_t kMostDeclarations = 9999;  // what Q05 can announce
  return "01012000010100000000000210" + Padded(std::to_string(std::min(headers, kMostDeclarations)), 4);
}

void MendMaster(Piece& master, const FieldInfo& field, std::size_t headers) {
  const std::string sound = SoundMaster(headers);
  SetFieldText(master.content, field, FieldText(sound, field));
}

}  // namespace tremvik
