#include "sample/occurrences.h"

#include <algorithm>
#include <array>
#include <string>

#include "layout/cr20.h"
#include "layout/cr25.h"
#include "layout/cr26.h"
#include "layout/cr27.h"
#include "layout/cr28.h"
#include "sample/record_builder.h"
#include "sample/registrations.h"

namespace tremvik::sample {
namespace {

constexpr int kAlways = 0;
constexpr int kStill = 999912;

// Who may use a sub-item: taxpayers registered under "8", the others, or all.
enum class Use : std::uint8_t { kCommon, kEight, kAll };
using enum Use;
using enum Detalhamento;

struct SubItem {
  std::string_view codigo;
  char propria_ou_st;
  int from;
  int until;
  Detalhamento detalhamento = kNenhum;
  Use use = kCommon;
  // At most one sub-item of a group stands in a declaration; 0 is no group.
  int group = 0;
};

constexpr std::array<SubItem, 82> kSubItens{{
    {"00201", '0', kAlways, 201004},
    {"00201", '1', kAlways, kStill},
    {"00202", '0', kAlways, kStill},
    {"00203", '0', kAlways, 201004},
    {"00204", '0', kAlways, 201004},
    {"00205", '0', kAlways, 201112},
    {"00205", '1', kAlways, 201112},
    {"00206", '0', kAlways, kStill},
    {"00210", '0', 200201, kStill, kSubstituto},
    {"00210", '1', 200201, kStill, kSubstituto},
    {"00211", '0', 200201, kStill, kSubstituto},
    {"00211", '1', 200201, kStill, kSubstituto},
    {"00218", '1', kAlways, kStill, kNenhum, kCommon, 1},
    {"00219", '1', kAlways, kStill, kNenhum, kCommon, 1},
    {"00220", '0', 201004, kStill, kAutorizacao},
    {"00220", '1', 200801, kStill, kAutorizacao},
    {"00221", '0', 201004, kStill, kAutorizacao},
    {"00221", '1', 200801, kStill, kAutorizacao},
    {"00222", '0', kAlways, kStill},
    {"00223", '0', 201201, kStill, kAutorizacao},
    {"00223", '1', 201201, kStill, kAutorizacao},
    {"00224", '0', 201201, kStill, kNenhum, kEight},
    {"00224", '1', 201201, kStill, kNenhum, kEight},
    {"00225", '0', 201201, kStill},
    {"00225", '1', 201201, kStill},
    {"00226", '1', 201301, kStill},
    {"00299", '0', kAlways, kStill, kNenhum, kAll},
    {"00299", '1', kAlways, kStill, kNenhum, kAll},
    {"00301", '0', kAlways, kStill},
    {"00302", '0', kAlways, kStill},
    {"00312", '0', kAlways, kStill},
    {"00399", '0', kAlways, kStill, kNenhum, kAll},
    {"00399", '1', kAlways, kStill, kNenhum, kAll},
    {"00701", '0', 200201, 201112, kSubstituido},
    {"00701", '1', 200201, kStill, kSubstituido},
    {"00702", '0', 200201, 201004, kSubstituido},
    {"00702", '1', 200201, kStill, kSubstituido},
    {"00703", '0', kAlways, 201004},
    {"00703", '1', kAlways, kStill},
    {"00704", '0', kAlways, 201004, kIE},
    {"00704", '1', kAlways, kStill},
    {"00705", '0', kAlways, 201004, kIE},
    {"00705", '1', kAlways, kStill},
    {"00706", '0', kAlways, 201004, kIE},
    {"00706", '1', kAlways, kStill},
    {"00707", '0', kAlways, 201004, kIE},
    {"00707", '1', kAlways, kStill},
    {"00708", '0', kAlways, kStill},
    {"00715", '0', kAlways, 201112},
    {"00715", '1', kAlways, 201112},
    {"00722", '0', kAlways, kStill},
    {"00729", '0', 200201, kStill, kIE, kCommon, 1},
    {"00729", '1', kAlways, kStill, kNenhum, kCommon, 1},
    {"00730", '0', 200201, kStill, kIE, kCommon, 1},
    {"00730", '1', kAlways, kStill, kNenhum, kCommon, 1},
    {"00740", '0', 201004, kStill, kAutorizacao},
    {"00740", '1', 200801, kStill, kAutorizacao},
    {"00741", '0', 201004, kStill, kAutorizacao},
    {"00741", '1', 200801, kStill, kAutorizacao},
    {"00742", '0', 201001, kStill},
    {"00742", '1', kAlways, kStill},
    {"00744", '0', 201201, kStill, kAutorizacao},
    {"00744", '1', 201201, kStill, kAutorizacao},
    {"00745", '0', 201201, kStill, kAutorizacao},
    {"00745", '1', 201201, kStill, kAutorizacao},
    {"00746", '0', 201201, kStill, kNenhum, kEight},
    {"00746", '1', 201201, kStill, kNenhum, kEight},
    {"00747", '0', 201201, kStill},
    {"00747", '1', 201201, kStill},
    {"00748", '1', 201301, kStill},
    {"00799", '0', kAlways, kStill, kNenhum, kAll},
    {"00799", '1', kAlways, kStill, kNenhum, kAll},
    {"00801", '0', kAlways, kStill},
    {"00802", '0', kAlways, kStill},
    {"00812", '0', kAlways, kStill},
    {"00899", '0', kAlways, kStill, kNenhum, kAll},
    {"00899", '1', kAlways, kStill, kNenhum, kAll},
    {"01401", '0', kAlways, kStill},
    {"01402", '0', kAlways, kStill},
    {"01406", '0', kAlways, kStill},
    {"01499", '0', kAlways, kStill, kNenhum, kAll},
    {"01499", '1', kAlways, kStill, kNenhum, kAll},
}};

bool Allowed(const SubItem& subitem, const Context& context) {
  if (context.ref < subitem.from || context.ref > subitem.until) return false;
  if (context.regime == 4 && subitem.propria_ou_st == '0') return false;
  return subitem.use == kAll || (subitem.use == kEight) == context.ie.starts_with('8');
}

using Chosen = std::vector<const SubItem*>;

// Takes up to `quantity` candidates that meet `condition`, in their order.
template <typename Condition>
void Choose(const Chosen& candidates, int quantity, Condition condition, Chosen& chosen) {
  for (const SubItem* candidate : candidates) {
    if (quantity == 0) return;
    const bool excluded = std::ranges::any_of(chosen, [candidate](const SubItem* other) {
      return other == candidate || (other->group != 0 && other->group == candidate->group);
    });
    if (excluded || !condition(*candidate)) continue;
    chosen.push_back(candidate);
    --quantity;
  }
}

// One sub-item for each kind of detail record, and one of free text.
void ChooseEveryKind(const Chosen& candidates, Chosen& chosen) {
  for (const auto detalhamento : {kIE, kSubstituto, kSubstituido, kAutorizacao}) {
    const auto detailed = [detalhamento](const SubItem& s) { return s.detalhamento == detalhamento; };
    Choose(candidates, 1, detailed, chosen);
  }
  const auto free_text = [](const SubItem& s) { return s.codigo.ends_with("99"); };
  Choose(candidates, 1, free_text, chosen);
}

Chosen ChooseSubItens(Draw& draw, const Context& context) {
  Chosen candidates;
  for (const SubItem& subitem : kSubItens) {
    if (Allowed(subitem, context)) candidates.push_back(&subitem);
  }
  draw.Shuffle(candidates);
  Chosen chosen;
  if (context.complete) ChooseEveryKind(candidates, chosen);
  const int ref = context.ref;
  const auto at_limit = [ref](const SubItem& s) { return s.from == ref || s.until == ref; };
  const auto any = [](const SubItem&) { return true; };
  Choose(candidates, 4, at_limit, chosen);
  Choose(candidates, draw.Between(0, 4), any, chosen);
  return chosen;
}

int DrawQuantity(Draw& draw, const SubItem& subitem) {
  if (subitem.detalhamento == kNenhum) return 0;
  const int quantity = draw.Between(1, 3);
  return subitem.codigo == "00729" ? 1 : quantity;
}

DetalheOcorrencia DrawDetalhe(Draw& draw, const SubItem& subitem, const Context& context) {
  DetalheOcorrencia detalhe{.valor = draw.Between<std::int64_t>(1, 9'000'000)};
  detalhe.chave = subitem.detalhamento == kAutorizacao
                      ? DrawAutorizacao(draw, subitem.codigo, detalhe.valor, context.ie)
                      : DrawIE(draw);
  // The sub-items that stand for single invoices name them; those for whole periods must not.
  const bool by_invoice = subitem.codigo == "00210" || subitem.codigo == "00701";
  if (by_invoice) detalhe.nf = draw.Between<std::int64_t>(1, 999'999'999);
  detalhe.inicio = draw.Between(context.ref / 100 * 100 + 1, context.ref);
  detalhe.fim = draw.Between(detalhe.inicio, context.ref);
  return detalhe;
}

Ocorrencia DrawOcorrencia(Draw& draw, const SubItem& subitem, const Context& context) {
  Ocorrencia ocorrencia{.subitem = subitem.codigo,
                        .propria_ou_st = subitem.propria_ou_st,
                        .detalhamento = subitem.detalhamento};
  const int quantity = DrawQuantity(draw, subitem);
  for (int i = 0; i < quantity; ++i) {
    ocorrencia.detalhes.push_back(DrawDetalhe(draw, subitem, context));
    ocorrencia.valor += ocorrencia.detalhes.back().valor;
  }
  if (quantity == 0) ocorrencia.valor = draw.Between<std::int64_t>(1, 9'000'000);
  std::ranges::sort(ocorrencia.detalhes, {}, &DetalheOcorrencia::chave);
  return ocorrencia;
}

struct Textos {
  std::string_view base_legal;
  std::string_view descricao;
};

constexpr std::array<Textos, 5> kTexts{{
    {"Art. 72, § 1º, do Regulamento do ICMS", "Estorno de crédito de mercadoria saída com isenção"},
    {"Convênio ICMS 52/92, cláusula primeira", "Remessa à área de livre comércio não comprovada no prazo"},
    {"Lei do ICMS, artigo 38, inciso II", "Crédito extemporâneo de energia elétrica da produção"},
    {"Resolução conjunta nº 3, item \"b\"", "Diferença de alíquota apurada em revisão; guia paga à parte"},
    {"Decisão do processo 1.204/2011", "Compensação autorizada: café, açúcar e pães (3ª parcela)"},
}};

// The texts above hold letters of Latin-1 only, which Windows-1252 has at the same places.
std::string ToWindows1252(std::string_view utf8) {
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const bool two_bytes = byte == 0xC2 || byte == 0xC3;
    bytes += two_bytes
                 ? static_cast<char>((byte & 0x03U) << 6U | (static_cast<unsigned char>(utf8[++i]) & 0x3FU))
                 : utf8[i];
  }
  return bytes;
}

std::string DetailRecord(Detalhamento detalhamento, const DetalheOcorrencia& detalhe) {
  switch (detalhamento) {
    case kNenhum:
      break;
    case kIE:
      return RecordBuilder<Cr25>().Text(Cr25::kIE, detalhe.chave).Number(Cr25::kValor, detalhe.valor).bytes();
    case kSubstituto:
      return RecordBuilder<Cr26>()
          .Text(Cr26::kIESubstituto, detalhe.chave)
          .Number(Cr26::kNF, detalhe.nf)
          .Number(Cr26::kDataInicio, detalhe.inicio)
          .Number(Cr26::kDataFim, detalhe.fim)
          .Number(Cr26::kValor, detalhe.valor)
          .bytes();
    case kSubstituido:
      return RecordBuilder<Cr27>()
          .Text(Cr27::kIESubstituido, detalhe.chave)
          .Number(Cr27::kNF, detalhe.nf)
          .Number(Cr27::kValor, detalhe.valor)
          .bytes();
    case kAutorizacao:
      return RecordBuilder<Cr28>()
          .Text(Cr28::kCodAutorizacao, detalhe.chave)
          .Number(Cr28::kValor, detalhe.valor)
          .bytes();
  }
  return {};
}

}  // namespace

std::vector<Ocorrencia> DrawOcorrencias(Draw& draw, const Context& context) {
  auto chosen = ChooseSubItens(draw, context);
  // A sub-item of free text may stand several times.
  const bool repeat = draw.Chance(30);
  if (repeat && !chosen.empty() && chosen.back()->codigo.ends_with("99")) {
    chosen.push_back(chosen.back());
  }
  std::ranges::sort(chosen);  // the table is in the file's order
  std::vector<Ocorrencia> ocorrencias;
  for (const SubItem* subitem : chosen)
    ocorrencias.push_back(DrawOcorrencia(draw, *subitem, context));
  return ocorrencias;
}

void Write(const Ocorrencia& ocorrencia, Draw& draw, std::string& out) {
  RecordBuilder<Cr20> record;
  record.Text(Cr20::kCodSubItem, ocorrencia.subitem)
      .Text(Cr20::kPropriaOuST, {&ocorrencia.propria_ou_st, 1})
      .Number(Cr20::kValor, ocorrencia.valor);
  const auto quantity = [&](Detalhamento detalhamento) {
    return ocorrencia.detalhamento == detalhamento ? static_cast<std::int64_t>(ocorrencia.detalhes.size())
                                                   : 0;
  };
  record.Number(Cr20::kQ25, quantity(kIE))
      .Number(Cr20::kQ26, quantity(kSubstituto))
      .Number(Cr20::kQ27, quantity(kSubstituido))
      .Number(Cr20::kQ28, quantity(kAutorizacao));
  const bool with_text = ocorrencia.subitem.ends_with("99");
  const Textos textos = with_text ? draw.OneOf(kTexts) : Textos{};
  record.Text(Cr20::kFLegal, ToWindows1252(textos.base_legal))
      .Text(Cr20::kOcorrencia, ToWindows1252(textos.descricao));
  out += record.bytes();
  for (const auto& detalhe : ocorrencia.detalhes)
    out += DetailRecord(ocorrencia.detalhamento, detalhe);
}

}  // namespace tremvik::sample
