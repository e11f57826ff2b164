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
std::vector<Pagamento> SortearPagamentos(Sorteio& sorteio, int ref, bool ao_menos_um) {
  std::vector<Pagamento> pagamentos;
  if (ref < 201201) return pagamentos;
  for (const char propria_ou_st : {'0', '1'}) {
    std::set<int> datas;
    const int quantidade = sorteio.Entre(ao_menos_um ? 1 : 0, 5);
    for (int i = 0; i < quantidade; ++i) {
      const int mes = SomarMeses(ref, sorteio.Entre(0, 2));
      datas.insert(mes * 100 + sorteio.Entre(1, 28));
    }
    if (quantidade > 0 && sorteio.Chance(30)) {
      datas.erase(datas.begin());
      datas.insert(ref * 100 + 1);
    }
    for (const int data : datas) {
      pagamentos.push_back({propria_ou_st, sorteio.Entre<std::int64_t>(1, 9'000'000), data});
    }
  }
  return pagamentos;
}

// The initial reference of regime 2 lies in the half-year of the reference.
int SortearRefInicial(Sorteio& sorteio, int ref) {
  const int primeiro_mes = ref % 100 <= 6 ? 1 : 7;
  return sorteio.Entre(ref / 100 * 100 + primeiro_mes, ref);
}

std::string ChaveInterna(Sorteio& sorteio) {
  constexpr std::string_view kHexa = "0123456789ABCDEF";
  std::string chave;
  for (int i = 0; i < 32; ++i)
    chave += kHexa[sorteio.Entre<std::size_t>(0, 15)];
  return chave;
}

std::string Cabecalho(const Declaracao& declaracao, Sorteio& sorteio) {
  Montador<Cr05> registro;
  registro.Texto(Cr05::kIE, declaracao.contribuinte.ie)
      .Texto(Cr05::kCNPJ, declaracao.contribuinte.cnpj)
      .Numero(Cr05::kRegTrib, declaracao.regime)
      .Numero(Cr05::kRef, declaracao.ref)
      .Numero(Cr05::kRefInicial, declaracao.ref_inicial)
      .Numero(Cr05::kTipo, sorteio.Entre(0, 3))
      .Numero(Cr05::kMovimento, sorteio.Entre(0, 1))
      .Numero(Cr05::kTransmitida, sorteio.Entre(0, 1))
      .Numero(Cr05::kSaldoCredPeriodoAnt, sorteio.Entre(0, 5'000'000))
      .Numero(Cr05::kSaldoCredPeriodoAntST, sorteio.Entre(0, 5'000'000))
      .Numero(Cr05::kOrigemPreDig, sorteio.Entre(0, 1))
      .Numero(Cr05::kICMSFixPer, declaracao.regime == 2 ? sorteio.Entre(1, 900'000) : 0)
      .Texto(Cr05::kChaveInterna, ChaveInterna(sorteio))
      .Numero(Cr05::kQ07, static_cast<std::int64_t>(declaracao.pagamentos.size()))
      .Numero(Cr05::kQ10, static_cast<std::int64_t>(declaracao.cfops.size()))
      .Numero(Cr05::kQ20, static_cast<std::int64_t>(declaracao.ocorrencias.size()))
      .Numero(Cr05::kQ30, declaracao.dipam)
      .Numero(Cr05::kQ31, declaracao.exportacoes);
  return registro.bytes();
}

// DIPAM code, municipality and value.
std::string ConteudoDipam(Sorteio& sorteio) {
  constexpr std::array<std::string_view, 6> kCodigos{"11", "12", "13", "22", "23", "24"};
  std::string conteudo(sorteio.Um(kCodigos));
  conteudo += sorteio.Digitos(5);
  return conteudo + "0000000" + sorteio.Digitos(8);
}

void EscreverExportacoes(int quantidade, Sorteio& sorteio, std::string& saida) {
  // Registrations of one year, each greater than the one before.
  std::int64_t numero = 120'000'000'000 + sorteio.Entre(0, 9'999'999);
  for (int i = 0; i < quantidade; ++i) {
    numero += sorteio.Entre(1, 999'999);
    saida += Montador<Cr31>().Numero(Cr31::kRE, numero).bytes();
  }
}

}  // namespace

int SomarMeses(int ref, int meses) {
  const int total = ref / 100 * 12 + ref % 100 - 1 + meses;
  return total / 12 * 100 + total % 12 + 1;
}

int Declaracao::Registros() const {
  std::size_t total = 1 + pagamentos.size() + cfops.size() + ocorrencias.size();
  for (const auto& ocorrencia : ocorrencias)
    total += ocorrencia.detalhes.size();
  int contados = dipam + exportacoes;
  for (const auto& cfop : cfops)
    contados += cfop.interestaduais + cfop.remessas;
  return static_cast<int>(total) + contados;
}

Declaracao SortearDeclaracao(Sorteio& sorteio, const Contribuinte& contribuinte, int ref, int regime,
                             bool completa) {
  Declaracao declaracao{.contribuinte = contribuinte, .ref = ref, .regime = regime};
  if (regime == 2) declaracao.ref_inicial = SortearRefInicial(sorteio, ref);
  declaracao.pagamentos = SortearPagamentos(sorteio, ref, completa);
  declaracao.cfops = SortearCfops(sorteio, ref, regime);
  declaracao.ocorrencias = SortearOcorrencias(sorteio, {ref, regime, contribuinte.ie, completa});
  const bool pede_dipam = std::ranges::any_of(declaracao.cfops, &DetalheCfop::pede_dipam);
  if (declaracao.AceitaDipam()) declaracao.dipam = sorteio.Entre(pede_dipam || completa ? 1 : 0, 3);
  if (declaracao.AceitaExportacoes()) declaracao.exportacoes = sorteio.Entre(completa ? 1 : 0, 3);
  if (completa) {
    auto& interestadual =
        *std::ranges::find_if(declaracao.cfops, [](const auto& c) { return c.interestaduais > 0; });
    interestadual.remessas = std::max(interestadual.remessas, 1);
  }
  return declaracao;
}

void Escrever(const Declaracao& declaracao, Sorteio& sorteio, std::string& saida) {
  saida += Cabecalho(declaracao, sorteio);
  for (const auto& pagamento : declaracao.pagamentos) {
    saida += Montador<Cr07>()
                 .Texto(Cr07::kPropriaOuST, {&pagamento.propria_ou_st, 1})
                 .Numero(Cr07::kValor, pagamento.valor)
                 .Numero(Cr07::kData, pagamento.data)
                 .bytes();
  }
  for (const auto& cfop : declaracao.cfops)
    Escrever(cfop, sorteio, saida);
  for (const auto& ocorrencia : declaracao.ocorrencias)
    Escrever(ocorrencia, sorteio, saida);
  for (int i = 0; i < declaracao.dipam; ++i) {
    saida += Montador<Cr30>().Texto(Cr30::kConteudo, ConteudoDipam(sorteio)).bytes();
  }
  EscreverExportacoes(declaracao.exportacoes, sorteio, saida);
}

}  // namespace tremvik::sample
