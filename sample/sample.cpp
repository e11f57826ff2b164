#include "sample/sample.h"

#include <algorithm>
#include <array>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include "layout/cr01.h"
#include "sample/declaration.h"
#include "sample/draw.h"
#include "sample/record_builder.h"
#include "sample/registrations.h"

namespace tremvik::sample {
namespace {

constexpr int kMaximoPorQuantidade = 9999;  // a quantity field has four digits
constexpr int kMaximoDeRegistros = 99'999;
constexpr int kDeclaracoesPadrao = 12;

// References on both sides of every limit at which a rule of the file changes.
constexpr std::array kReferencias{
    200007, 200012, 200101, 200112, 200201, 200212, 200301, 200307, 200308, 200312, 200401, 200412, 200501,
    200512, 200601, 200606, 200607, 200712, 200801, 200804, 200805, 200906, 200907, 200912, 201001, 201003,
    201004, 201005, 201006, 201007, 201012, 201101, 201110, 201111, 201112, 201201, 201212, 201301};
constexpr int kPrimeiraReferencia = kReferencias.front();
constexpr int kMesesSorteados = 174;          // up to 201412
constexpr int kPrimeiraDoGrupoOito = 201201;  // IEs beginning with 8
constexpr int kAntesDoRegime4 = 200006;
constexpr int kPrimeiraDoRegime4 = 200007;
constexpr int kUltimaDoRegime4 = 200512;

// Who declares what: references in a drawn order, the limits first, and regimes in turn.
class Agenda {
 public:
  explicit Agenda(Sorteio& sorteio) : sorteio_(sorteio), limites_(kReferencias.begin(), kReferencias.end()) {
    sorteio_.Embaralhar(limites_);
    limites_.insert(limites_.begin(), kAntesDoRegime4);  // comes last: files without it stay as they were
  }

  Declaracao Completa() {
    const int ref = SomarMeses(kPrimeiraDoGrupoOito, sorteio_.Entre(0, 35));
    Contribuinte contribuinte = Novo(SortearIE(sorteio_));
    usadas_.insert({contribuinte.ie, ref});
    return SortearDeclaracao(sorteio_, contribuinte, ref, 1, true);
  }

  Declaracao Proxima() {
    const int ref = ProximaReferencia();
    const Contribuinte contribuinte = QuemDeclara(ref);
    return SortearDeclaracao(sorteio_, contribuinte, ref, ProximoRegime(ref), false);
  }

 private:
  int ProximaReferencia() {
    if (limites_.empty()) return SomarMeses(kPrimeiraReferencia, sorteio_.Entre(0, kMesesSorteados - 1));
    const int ref = limites_.back();
    limites_.pop_back();
    return ref;
  }

  int ProximoRegime(int ref) {
    if (ref == kPrimeiraDoRegime4) return 4;
    const bool com_regime4 = ref > kPrimeiraDoRegime4 && ref <= kUltimaDoRegime4;
    return com_regime4 ? 1 + antigas_++ % 4 : 1 + recentes_++ % 3;
  }

  Contribuinte Novo(std::string ie) {
    contribuintes_.push_back({.ie = std::move(ie), .cnpj = SortearCNPJ(sorteio_)});
    return contribuintes_.back();
  }

  // Mostly someone who declares other references too; of the new ones, every second that can begins with 8.
  Contribuinte QuemDeclara(int ref) {
    const bool recente = ref >= kPrimeiraDoGrupoOito;
    if (sorteio_.Chance(60) && (!recente || novos_recentes_ > 0)) {
      const Contribuinte& antigo = contribuintes_[sorteio_.Entre<std::size_t>(0, contribuintes_.size() - 1)];
      const bool aceita = recente || !antigo.ie.starts_with('8');
      if (aceita && usadas_.insert({antigo.ie, ref}).second) return antigo;
    }
    const bool grupo_oito = recente && novos_recentes_++ % 2 == 0;
    std::string ie = grupo_oito ? SortearIE(sorteio_, '8') : SortearIE(sorteio_);
    while (!usadas_.insert({ie, ref}).second)
      ie = SortearIE(sorteio_);
    return Novo(std::move(ie));
  }

  Sorteio& sorteio_;
  std::vector<int> limites_;
  std::vector<Contribuinte> contribuintes_;
  std::set<std::pair<std::string, int>> usadas_;
  int antigas_ = 0;
  int recentes_ = 0;
  int novos_recentes_ = 0;
};

int Registros(const std::vector<Declaracao>& plano) {
  int total = 1;
  for (const auto& declaracao : plano)
    total += declaracao.Registros();
  return total;
}

std::vector<Declaracao> Planejar(const Opcoes& opcoes, Sorteio& sorteio) {
  const bool quantas_couberem = opcoes.declaracoes == 0 && opcoes.registros > 0;
  const int padrao = quantas_couberem ? kMaximoPorQuantidade : kDeclaracoesPadrao;
  const auto quantidade = static_cast<std::size_t>(opcoes.declaracoes > 0 ? opcoes.declaracoes : padrao);
  Agenda agenda(sorteio);
  std::vector<Declaracao> plano{agenda.Completa()};
  int total = Registros(plano);
  while (plano.size() < quantidade) {
    Declaracao declaracao = agenda.Proxima();
    total += declaracao.Registros();
    if (quantas_couberem && total > opcoes.registros) break;
    plano.push_back(std::move(declaracao));
  }
  return plano;
}

// The quantities that can be raised at will: their records have no rules that tie them to others.
std::vector<int*> QuantidadesLivres(std::vector<Declaracao>& plano) {
  std::vector<int*> livres;
  for (auto& declaracao : plano) {
    if (declaracao.AceitaDipam()) livres.push_back(&declaracao.dipam);
    if (declaracao.AceitaExportacoes()) livres.push_back(&declaracao.exportacoes);
    for (auto& cfop : declaracao.cfops) {
      if (cfop.interestaduais > 0) livres.insert(livres.end(), {&cfop.interestaduais, &cfop.remessas});
    }
  }
  return livres;
}

// Brings the plan to exactly `registros` records, spread evenly.
void Completar(std::vector<Declaracao>& plano, int registros) {
  const int minimo = Registros(plano);
  const auto livres = QuantidadesLivres(plano);
  int faltam = registros - minimo;
  int folga = 0;
  for (const int* quantidade : livres)
    folga += kMaximoPorQuantidade - *quantidade;
  if (faltam < 0 || faltam > folga) {
    throw std::invalid_argument("Com esta semente, um arquivo de " + std::to_string(plano.size()) +
                                (plano.size() == 1 ? " declaração" : " declarações") + " tem de " +
                                std::to_string(minimo) + " a " + std::to_string(minimo + folga) +
                                " registros. Informe outro número de registros ou de declarações.");
  }
  while (faltam > 0) {
    const int parte = (faltam + static_cast<int>(livres.size()) - 1) / static_cast<int>(livres.size());
    for (int* quantidade : livres) {
      const int mais = std::min({parte, faltam, kMaximoPorQuantidade - *quantidade});
      *quantidade += mais;
      faltam -= mais;
    }
  }
}

void Conferir(const Opcoes& opcoes) {
  if (opcoes.declaracoes < 0 || opcoes.declaracoes > kMaximoPorQuantidade) {
    throw std::invalid_argument("O número de declarações deve estar entre 1 e 9999.");
  }
  if (opcoes.registros < 0 || opcoes.registros > kMaximoDeRegistros) {
    throw std::invalid_argument("O número de registros deve estar entre 1 e 99999.");
  }
}

std::string Mestre(Sorteio& sorteio, std::size_t declaracoes) {
  Montador<Cr01> registro;
  registro.Texto(Cr01::kTipoDocto, "01")
      .Numero(Cr01::kDataGeracao, 20150100 + sorteio.Entre(1, 31))
      .Numero(Cr01::kHoraGeracao, sorteio.Entre<std::int64_t>(8, 17) * 10000)
      .Texto(Cr01::kVersaoPref, "0210")
      .Numero(Cr01::kQ05, static_cast<std::int64_t>(declaracoes));
  return registro.bytes();
}

}  // namespace

std::string Gerar(const Opcoes& opcoes) {
  Conferir(opcoes);
  Sorteio sorteio(opcoes.semente);
  auto plano = Planejar(opcoes, sorteio);
  if (opcoes.registros > 0) Completar(plano, opcoes.registros);
  if (opcoes.duvida) ExcederImposto(plano.front().cfops.front());
  std::ranges::sort(plano, {}, [](const Declaracao& d) { return std::tuple(d.contribuinte.ie, d.ref); });
  std::string saida = Mestre(sorteio, plano.size());
  for (const auto& declaracao : plano)
    Escrever(declaracao, sorteio, saida);
  return saida;
}

}  // namespace tremvik::sample
