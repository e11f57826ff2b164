#include "sample/declaration.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

#include "layout/cr05.h"
#include "layout/cr07.h"
#include "layout/cr30.h"
#include "layout/cr31.h"
#include "sample/record_builder.h"

namespace tremvik::sample {
namespace {

// Payments are dated from the first day of the reference month to the last day of the second month after it.
std::vector<Pagamento> DrawPagamentos(Draw& draw, int ref, bool at_least_one) {
  std::vector<Pagamento> pagamentos;
  if (ref < 201201) return pagamentos;
  for (const char propria_ou_st : {'0', '1'}) {
    std::set<int> dates;
    const int quantity = draw.Between(at_least_one ? 1 : 0, 5);
    for (int i = 0; i < quantity; ++i) {
      const int month = AddMonths(ref, draw.Between(0, 2));
      dates.insert(month * 100 + draw.Between(1, 28));
    }
    if (quantity > 0 && draw.Chance(30)) {
      dates.erase(dates.begin());
      dates.insert(ref * 100 + 1);
    }
    for (const int data : dates) {
      pagamentos.push_back({propria_ou_st, draw.Between<std::int64_t>(1, 9'000'000), data});
    }
  }
  return pagamentos;
}

// The initial reference of regime 2 lies in the half-year of the reference.
int DrawRefInicial(Draw& draw, int ref) {
  const int first_month = ref % 100 <= 6 ? 1 : 7;
  return draw.Between(ref / 100 * 100 + first_month, ref);
}

std::string ChaveInterna(Draw& draw) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string chave;
  for (int i = 0; i < 32; ++i)
    chave += kHex[draw.Between<std::size_t>(0, 15)];
  return chave;
}

std::string HeaderRecord(const Declaracao& declaracao, Draw& draw) {
  RecordBuilder<Cr05> record;
  record.Text(Cr05::kIE, declaracao.contribuinte.ie)
      .Text(Cr05::kCNPJ, declaracao.contribuinte.cnpj)
      .Number(Cr05::kRegTrib, declaracao.regime)
      .Number(Cr05::kRef, declaracao.ref)
      .Number(Cr05::kRefInicial, declaracao.ref_inicial)
      .Number(Cr05::kTipo, draw.Between(0, 3))
      .Number(Cr05::kMovimento, draw.Between(0, 1))
      .Number(Cr05::kTransmitida, draw.Between(0, 1))
      .Number(Cr05::kSaldoCredPeriodoAnt, draw.Between(0, 5'000'000))
      .Number(Cr05::kSaldoCredPeriodoAntST, draw.Between(0, 5'000'000))
      .Number(Cr05::kOrigemPreDig, draw.Between(0, 1))
      .Number(Cr05::kICMSFixPer, declaracao.regime == 2 ? draw.Between(1, 900'000) : 0)
      .Text(Cr05::kChaveInterna, ChaveInterna(draw))
      .Number(Cr05::kQ07, static_cast<std::int64_t>(declaracao.pagamentos.size()))
      .Number(Cr05::kQ10, static_cast<std::int64_t>(declaracao.cfops.size()))
      .Number(Cr05::kQ20, static_cast<std::int64_t>(declaracao.ocorrencias.size()))
      .Number(Cr05::kQ30, declaracao.dipam)
      .Number(Cr05::kQ31, declaracao.exportacoes);
  return record.bytes();
}

// DIPAM code, municipality and value.
std::string DipamContent(Draw& draw) {
  constexpr std::array<std::string_view, 6> kCodigos{"11", "12", "13", "22", "23", "24"};
  std::string content(draw.OneOf(kCodigos));
  content += draw.Digits(5);
  return content + "0000000" + draw.Digits(8);
}

void WriteExportacoes(int quantity, Draw& draw, std::string& out) {
  // Registrations of one year, each greater than the one before.
  std::int64_t number = 120'000'000'000 + draw.Between(0, 9'999'999);
  for (int i = 0; i < quantity; ++i) {
    number += draw.Between(1, 999'999);
    out += RecordBuilder<Cr31>().Number(Cr31::kRE, number).bytes();
  }
}

}  // namespace

int AddMonths(int ref, int months) {
  const int total = ref / 100 * 12 + ref % 100 - 1 + months;
  return total / 12 * 100 + total % 12 + 1;
}

int Declaracao::Records() const {
  std::size_t total = 1 + pagamentos.size() + cfops.size() + ocorrencias.size();
  for (const auto& ocorrencia : ocorrencias)
    total += ocorrencia.detalhes.size();
  int counted = dipam + exportacoes;
  for (const auto& cfop : cfops)
    counted += cfop.interestaduais + cfop.remessas;
  return static_cast<int>(total) + counted;
}

Declaracao DrawDeclaracao(Draw& draw, const Contribuinte& contribuinte, int ref, int regime, bool complete) {
  Declaracao declaracao{.contribuinte = contribuinte, .ref = ref, .regime = regime};
  if (regime == 2) declaracao.ref_inicial = DrawRefInicial(draw, ref);
  declaracao.pagamentos = DrawPagamentos(draw, ref, complete);
  declaracao.cfops = DrawCfops(draw, ref, regime);
  declaracao.ocorrencias = DrawOcorrencias(draw, {ref, regime, contribuinte.ie, complete});
  const bool needs_dipam = std::ranges::any_of(declaracao.cfops, &DetalheCfop::needs_dipam);
  if (declaracao.TakesDipam()) declaracao.dipam = draw.Between(needs_dipam || complete ? 1 : 0, 3);
  if (declaracao.TakesExportacoes()) declaracao.exportacoes = draw.Between(complete ? 1 : 0, 3);
  if (complete) {
    auto& interstate =
        *std::ranges::find_if(declaracao.cfops, [](const auto& c) { return c.interestaduais > 0; });
    interstate.remessas = std::max(interstate.remessas, 1);
  }
  return declaracao;
}

void Write(const Declaracao& declaracao, Draw& draw, std::string& out) {
  out += HeaderRecord(declaracao, draw);
  for (const auto& pagamento : declaracao.pagamentos) {
    out += RecordBuilder<Cr07>()
               .Text(Cr07::kPropriaOuST, {&pagamento.propria_ou_st, 1})
               .Number(Cr07::kValor, pagamento.valor)
               .Number(Cr07::kData, pagamento.data)
               .bytes();
  }
  for (const auto& cfop : declaracao.cfops)
    Write(cfop, draw, out);
  for (const auto& ocorrencia : declaracao.ocorrencias)
    Write(ocorrencia, draw, out);
  for (int i = 0; i < declaracao.dipam; ++i) {
    out += RecordBuilder<Cr30>().Text(Cr30::kConteudo, DipamContent(draw)).bytes();
  }
  WriteExportacoes(declaracao.exportacoes, draw, out);
}

}  // namespace tremvik::sample
