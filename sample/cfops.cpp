#include "sample/cfops.h"

#include <algorithm>
#include <array>

#include "layout/cr10.h"
#include "layout/cr14.h"
#include "layout/cr18.h"
#include "sample/record_builder.h"

namespace tremvik::sample {
namespace {

constexpr int kAlways = 0;
constexpr int kStill = 999912;
constexpr int kNever = 1000000;

// Operations that are valid from reference `from` to `until`, and what they may hold.
struct Group {
  int from;
  int until;
  int withheld_from;  // first reference with withheld tax of substitute and substituted
  int regime4_from;   // first reference open to the simplified regime
  bool needs_dipam;   // transport, communication or electric energy
  std::string_view codigos;
};

constexpr std::array<Group, 33> kGroups{{
    // Three digits, and one-digit sub-items of x.99 from 200101 on.
    {kAlways, 200212, kNever, kNever, false,
     "111000 112000 121000 131000 144000 152000 191000 211000 212000"},
    {kAlways, 200212, kNever, kNever, false,
     "262000 298000 311000 391000 511000 512000 532000 611000 612000"},
    {kAlways, 200212, kNever, kNever, false, "711000 716000"},
    {kAlways, 200212, kNever, kNever, true, "541000 551000 561000 641000 661000 761000"},
    {kAlways, 200212, kNever, kAlways, false, "171000 173000 571000 573000"},
    {kAlways, 200212, 200201, kAlways, false, "196000"},
    {kAlways, 200212, 200201, kNever, false, "296000 597000 697000"},
    {kAlways, 200012, kNever, kAlways, false, "199000 599000"},
    {kAlways, 200012, kNever, kNever, false, "299000"},
    {200101, 200212, kNever, kAlways, false, "199100 399100 599300"},
    {200101, 200212, kNever, kNever, false, "299200"},
    // Four digits.
    {200301, kStill, kNever, kNever, false, "110100 110200 112400 115100 120100 125200 130200 135200 155600"},
    {200301, kStill, kNever, kNever, false, "210100 210200 215200 235200 255600 310100 310200 393000"},
    {200301, kStill, kNever, kNever, false, "510100 510200 515200 520200 550100 555100 610100 610200 610800"},
    {200301, kStill, kNever, kNever, false, "620200 710100 710200 712700 750100"},
    {200301, kStill, kNever, kNever, true, "525100 525800 530100 530700 535100 535700 625100 630100 635200"},
    {200301, kStill, kNever, kNever, true, "725100 730100 735800"},
    {200301, kStill, 200301, 200301, false, "140100 140300 141100 190100 191600 194900 540100 540300 540500"},
    {200301, kStill, 200301, 200301, false, "590100 592900 594900"},
    {200301, kStill, 200301, kNever, false, "240300 294900 640300 694900"},
    {200401, kStill, 200401, 200401, false, "165100 165300 565100 565500"},
    {200401, kStill, 200401, kNever, false, "265200 665200"},
    {200401, kStill, kNever, kNever, false, "365100 765100"},
    {200501, kStill, 200501, 200501, false, "193200 193300 593300"},
    {200501, kStill, 200501, kNever, false, "293200 693300"},
    {200501, kStill, kNever, kNever, true, "535900 635900"},
    {200607, kStill, kNever, kNever, false, "150500 250600 550400 650500"},
    {200801, kStill, 200801, kNever, false, "136000"},
    {200801, kStill, 200801, kNever, true, "536000"},
    {200805, kStill, 200805, kNever, true, "636000"},
    {200907, kStill, kNever, kNever, false, "566700 666700 766700"},
    {201007, kStill, 201007, kNever, false, "193400 293400 593400 693400"},
    {201101, kStill, kNever, kNever, false, "112800 212800 312800"},
}};

bool IsInterstate(std::string_view codigo) { return codigo.front() == '2' || codigo.front() == '6'; }

struct Candidate {
  const Group* group;
  std::string_view codigo;
};

std::vector<Candidate> CandidatesFor(int ref, int regime) {
  std::vector<Candidate> candidates;
  for (const Group& group : kGroups) {
    if (ref < group.from || ref > group.until || (regime == 4 && ref < group.regime4_from)) continue;
    for (std::size_t i = 0; i < group.codigos.size(); i += 7) {
      candidates.push_back({&group, group.codigos.substr(i, 6)});
    }
  }
  return candidates;
}

// The file names the states by their two-digit codes.
constexpr std::array<std::string_view, 8> kEstados{"13", "14", "29", "31", "33", "41", "43", "53"};
constexpr std::array<std::string_view, 4> kMunicipios{"1302603", "1303569", "1400100", "1600303"};
constexpr std::array kAliquotas{7, 12, 18, 25};

DetalheCfop DrawDetalhe(Draw& draw, const Candidate& candidate, int ref) {
  DetalheCfop detalhe{.codigo = candidate.codigo};
  detalhe.needs_dipam = candidate.group->needs_dipam && ref > 200012;
  if (draw.Chance(80)) {
    detalhe.base = draw.Between<std::int64_t>(100, 90'000'000);
    detalhe.imposto = detalhe.base * draw.OneOf(kAliquotas) / 100;
  }
  if (detalhe.base == 0 || draw.Chance(30)) detalhe.isentas = draw.Between<std::int64_t>(1, 20'000'000);
  if (draw.Chance(30)) detalhe.outras = draw.Between<std::int64_t>(1, 9'000'000);
  if (draw.Chance(10)) detalhe.outros_impostos = draw.Between<std::int64_t>(1, 500'000);
  if (ref <= 200112 && draw.Chance(30)) detalhe.imposto_retido = draw.Between<std::int64_t>(1, 700'000);
  if (ref >= candidate.group->withheld_from && draw.Chance(70)) {
    detalhe.retido_substituto = draw.Between<std::int64_t>(1, 900'000);
    if (draw.Chance(50)) detalhe.retido_substituido = draw.Between<std::int64_t>(1, 900'000);
  }
  if (IsInterstate(candidate.codigo)) {
    detalhe.interestaduais = draw.Between(1, 3);
    detalhe.remessas = draw.Between(0, 2);
  }
  return detalhe;
}

template <typename Condition>
void MoveSome(std::size_t quantity, Condition condition, std::vector<Candidate>& from,
              std::vector<Candidate>& to) {
  for (auto it = from.begin(); it != from.end() && quantity > 0;) {
    if (condition(*it)) {
      to.push_back(*it);
      it = from.erase(it);
      --quantity;
    } else {
      ++it;
    }
  }
}

// A value field of 15 digits.
std::string Value(Draw& draw) { return "0000000" + draw.Digits(8); }

std::string InterstateContent(Draw& draw) {
  std::string content(draw.OneOf(kEstados));
  for (int i = 0; i < 9; ++i)
    content += Value(draw);
  return content + "0";
}

std::string ShipmentContent(Draw& draw) {
  std::string content(draw.OneOf(kMunicipios));
  content += draw.Digits(9);  // invoice
  content += "20150110";
  content += draw.Digits(12);
  return content + Value(draw);
}

}  // namespace

std::vector<DetalheCfop> DrawCfops(Draw& draw, int ref, int regime) {
  auto candidates = CandidatesFor(ref, regime);
  draw.Shuffle(candidates);
  std::vector<Candidate> chosen;
  const auto at_limit = [ref](const Candidate& c) { return c.group->from == ref || c.group->until == ref; };
  const auto interstate = [](const Candidate& c) { return IsInterstate(c.codigo); };
  const auto any = [](const Candidate&) { return true; };
  MoveSome(4, at_limit, candidates, chosen);
  MoveSome(1, interstate, candidates, chosen);
  MoveSome(draw.Between<std::size_t>(1, 4), any, candidates, chosen);
  std::ranges::sort(chosen, {}, &Candidate::codigo);
  std::vector<DetalheCfop> detalhes;
  detalhes.reserve(chosen.size());
  for (const Candidate& candidate : chosen)
    detalhes.push_back(DrawDetalhe(draw, candidate, ref));
  return detalhes;
}

void ExceedImposto(DetalheCfop& detalhe) {
  detalhe.base = 1'000'000;
  detalhe.imposto = 250'001;
}

void Write(const DetalheCfop& detalhe, Draw& draw, std::string& out) {
  const auto contabil = detalhe.base + detalhe.isentas + detalhe.outras + detalhe.imposto_retido +
                        detalhe.retido_substituto + detalhe.outros_impostos;
  out += RecordBuilder<Cr10>()
             .Text(Cr10::kCFOP, detalhe.codigo)
             .Number(Cr10::kValorContabil, contabil)
             .Number(Cr10::kBaseCalculo, detalhe.base)
             .Number(Cr10::kImposto, detalhe.imposto)
             .Number(Cr10::kIsentasNaoTrib, detalhe.isentas)
             .Number(Cr10::kOutras, detalhe.outras)
             .Number(Cr10::kImpostoRetidoST, detalhe.imposto_retido)
             .Number(Cr10::kImpRetSubstitutoST, detalhe.retido_substituto)
             .Number(Cr10::kImpRetSubstituido, detalhe.retido_substituido)
             .Number(Cr10::kOutrosImpostos, detalhe.outros_impostos)
             .Number(Cr10::kQ14, detalhe.interestaduais)
             .bytes();
  for (int i = 0; i < detalhe.interestaduais; ++i) {
    const int remessas = i == 0 ? detalhe.remessas : 0;
    out += RecordBuilder<Cr14>()
               .Text(Cr14::kConteudo, InterstateContent(draw))
               .Number(Cr14::kQ18, remessas)
               .bytes();
    for (int j = 0; j < remessas; ++j) {
      out += RecordBuilder<Cr18>().Text(Cr18::kConteudo, ShipmentContent(draw)).bytes();
    }
  }
}

}  // namespace tremvik::sample
