#include "sample/cfops.h"

#include <algorithm>
#include <array>

#include "layout/cr10.h"
#include "layout/cr14.h"
#include "layout/cr18.h"
#include "sample/record_builder.h"

namespace tremvik::sample {
namespace {

constexpr int kSempre = 0;
constexpr int kAinda = 999912;
constexpr int kNunca = 1000000;

// Operations that are valid from reference `de` to `ate`, and what they may hold.
struct Grupo {
  int de;
  int ate;
  int retido_de;    // first reference with withheld tax of substitute and substituted
  int regime4_de;   // first reference open to the simplified regime
  bool pede_dipam;  // transport, communication or electric energy
  std::string_view codigos;
};

constexpr std::array<Grupo, 33> kGrupos{{
    // Three digits, and one-digit sub-items of x.99 from 200101 on.
    {kSempre, 200212, kNunca, kNunca, false,
     "111000 112000 121000 131000 144000 152000 191000 211000 212000"},
    {kSempre, 200212, kNunca, kNunca, false,
     "262000 298000 311000 391000 511000 512000 532000 611000 612000"},
    {kSempre, 200212, kNunca, kNunca, false, "711000 716000"},
    {kSempre, 200212, kNunca, kNunca, true, "541000 551000 561000 641000 661000 761000"},
    {kSempre, 200212, kNunca, kSempre, false, "171000 173000 571000 573000"},
    {kSempre, 200212, 200201, kSempre, false, "196000"},
    {kSempre, 200212, 200201, kNunca, false, "296000 597000 697000"},
    {kSempre, 200012, kNunca, kSempre, false, "199000 599000"},
    {kSempre, 200012, kNunca, kNunca, false, "299000"},
    {200101, 200212, kNunca, kSempre, false, "199100 399100 599300"},
    {200101, 200212, kNunca, kNunca, false, "299200"},
    // Four digits.
    {200301, kAinda, kNunca, kNunca, false, "110100 110200 112400 115100 120100 125200 130200 135200 155600"},
    {200301, kAinda, kNunca, kNunca, false, "210100 210200 215200 235200 255600 310100 310200 393000"},
    {200301, kAinda, kNunca, kNunca, false, "510100 510200 515200 520200 550100 555100 610100 610200 610800"},
    {200301, kAinda, kNunca, kNunca, false, "620200 710100 710200 712700 750100"},
    {200301, kAinda, kNunca, kNunca, true, "525100 525800 530100 530700 535100 535700 625100 630100 635200"},
    {200301, kAinda, kNunca, kNunca, true, "725100 730100 735800"},
    {200301, kAinda, 200301, 200301, false, "140100 140300 141100 190100 191600 194900 540100 540300 540500"},
    {200301, kAinda, 200301, 200301, false, "590100 592900 594900"},
    {200301, kAinda, 200301, kNunca, false, "240300 294900 640300 694900"},
    {200401, kAinda, 200401, 200401, false, "165100 165300 565100 565500"},
    {200401, kAinda, 200401, kNunca, false, "265200 665200"},
    {200401, kAinda, kNunca, kNunca, false, "365100 765100"},
    {200501, kAinda, 200501, 200501, false, "193200 193300 593300"},
    {200501, kAinda, 200501, kNunca, false, "293200 693300"},
    {200501, kAinda, kNunca, kNunca, true, "535900 635900"},
    {200607, kAinda, kNunca, kNunca, false, "150500 250600 550400 650500"},
    {200801, kAinda, 200801, kNunca, false, "136000"},
    {200801, kAinda, 200801, kNunca, true, "536000"},
    {200805, kAinda, 200805, kNunca, true, "636000"},
    {200907, kAinda, kNunca, kNunca, false, "566700 666700 766700"},
    {201007, kAinda, 201007, kNunca, false, "193400 293400 593400 693400"},
    {201101, kAinda, kNunca, kNunca, false, "112800 212800 312800"},
}};

bool Interestadual(std::string_view codigo) { return codigo.front() == '2' || codigo.front() == '6'; }

struct Candidato {
  const Grupo* grupo;
  std::string_view codigo;
};

std::vector<Candidato> Candidatos(int ref, int regime) {
  std::vector<Candidato> candidatos;
  for (const Grupo& grupo : kGrupos) {
    if (ref < grupo.de || ref > grupo.ate || (regime == 4 && ref < grupo.regime4_de)) continue;
    for (std::size_t i = 0; i < grupo.codigos.size(); i += 7) {
      candidatos.push_back({&grupo, grupo.codigos.substr(i, 6)});
    }
  }
  return candidatos;
}

// The file names the states by their two-digit codes.
constexpr std::array<std::string_view, 8> kEstados{"13", "14", "29", "31", "33", "41", "43", "53"};
constexpr std::array<std::string_view, 4> kMunicipios{"1302603", "1303569", "1400100", "1600303"};
constexpr std::array kAliquotas{7, 12, 18, 25};

DetalheCfop Sortear(Sorteio& sorteio, const Candidato& candidato, int ref) {
  DetalheCfop detalhe{.codigo = candidato.codigo};
  detalhe.pede_dipam = candidato.grupo->pede_dipam && ref > 200012;
  if (sorteio.Chance(80)) {
    detalhe.base = sorteio.Entre<std::int64_t>(100, 90'000'000);
    detalhe.imposto = detalhe.base * sorteio.Um(kAliquotas) / 100;
  }
  if (detalhe.base == 0 || sorteio.Chance(30)) detalhe.isentas = sorteio.Entre<std::int64_t>(1, 20'000'000);
  if (sorteio.Chance(30)) detalhe.outras = sorteio.Entre<std::int64_t>(1, 9'000'000);
  if (sorteio.Chance(10)) detalhe.outros_impostos = sorteio.Entre<std::int64_t>(1, 500'000);
  if (ref <= 200112 && sorteio.Chance(30)) detalhe.imposto_retido = sorteio.Entre<std::int64_t>(1, 700'000);
  if (ref >= candidato.grupo->retido_de && sorteio.Chance(70)) {
    detalhe.retido_substituto = sorteio.Entre<std::int64_t>(1, 900'000);
    if (sorteio.Chance(50)) detalhe.retido_substituido = sorteio.Entre<std::int64_t>(1, 900'000);
  }
  if (Interestadual(candidato.codigo)) {
    detalhe.interestaduais = sorteio.Entre(1, 3);
    detalhe.remessas = sorteio.Entre(0, 2);
  }
  return detalhe;
}

template <typename Condicao>
void Mover(std::size_t quantidade, Condicao condicao, std::vector<Candidato>& de,
           std::vector<Candidato>& para) {
  for (auto it = de.begin(); it != de.end() && quantidade > 0;) {
    if (condicao(*it)) {
      para.push_back(*it);
      it = de.erase(it);
      --quantidade;
    } else {
      ++it;
    }
  }
}

// A value field of 15 digits.
std::string Valor(Sorteio& sorteio) { return "0000000" + sorteio.Digitos(8); }

std::string ConteudoInterestadual(Sorteio& sorteio) {
  std::string conteudo(sorteio.Um(kEstados));
  for (int i = 0; i < 9; ++i)
    conteudo += Valor(sorteio);
  return conteudo + "0";
}

std::string ConteudoRemessa(Sorteio& sorteio) {
  std::string conteudo(sorteio.Um(kMunicipios));
  conteudo += sorteio.Digitos(9);  // invoice
  conteudo += "20150110";
  conteudo += sorteio.Digitos(12);
  return conteudo + Valor(sorteio);
}

}  // namespace

std::vector<DetalheCfop> SortearCfops(Sorteio& sorteio, int ref, int regime) {
  auto candidatos = Candidatos(ref, regime);
  sorteio.Embaralhar(candidatos);
  std::vector<Candidato> escolhidos;
  const auto no_limite = [ref](const Candidato& c) { return c.grupo->de == ref || c.grupo->ate == ref; };
  const auto interestadual = [](const Candidato& c) { return Interestadual(c.codigo); };
  const auto qualquer = [](const Candidato&) { return true; };
  Mover(4, no_limite, candidatos, escolhidos);
  Mover(1, interestadual, candidatos, escolhidos);
  Mover(sorteio.Entre<std::size_t>(1, 4), qualquer, candidatos, escolhidos);
  std::ranges::sort(escolhidos, {}, &Candidato::codigo);
  std::vector<DetalheCfop> detalhes;
  detalhes.reserve(escolhidos.size());
  for (const Candidato& candidato : escolhidos)
    detalhes.push_back(Sortear(sorteio, candidato, ref));
  return detalhes;
}

void ExcederImposto(DetalheCfop& detalhe) {
  detalhe.base = 1'000'000;
  detalhe.imposto = 250'001;
}

void Escrever(const DetalheCfop& detalhe, Sorteio& sorteio, std::string& saida) {
  const auto contabil = detalhe.base + detalhe.isentas + detalhe.outras + detalhe.imposto_retido +
                        detalhe.retido_substituto + detalhe.outros_impostos;
  saida += Montador<Cr10>()
               .Texto(Cr10::kCFOP, detalhe.codigo)
               .Numero(Cr10::kValorContabil, contabil)
               .Numero(Cr10::kBaseCalculo, detalhe.base)
               .Numero(Cr10::kImposto, detalhe.imposto)
               .Numero(Cr10::kIsentasNaoTrib, detalhe.isentas)
               .Numero(Cr10::kOutras, detalhe.outras)
               .Numero(Cr10::kImpostoRetidoST, detalhe.imposto_retido)
               .Numero(Cr10::kImpRetSubstitutoST, detalhe.retido_substituto)
               .Numero(Cr10::kImpRetSubstituido, detalhe.retido_substituido)
               .Numero(Cr10::kOutrosImpostos, detalhe.outros_impostos)
               .Numero(Cr10::kQ14, detalhe.interestaduais)
               .bytes();
  for (int i = 0; i < detalhe.interestaduais; ++i) {
    const int remessas = i == 0 ? detalhe.remessas : 0;
    saida += Montador<Cr14>()
                 .Texto(Cr14::kConteudo, ConteudoInterestadual(sorteio))
                 .Numero(Cr14::kQ18, remessas)
                 .bytes();
    for (int j = 0; j < remessas; ++j) {
      saida += Montador<Cr18>().Texto(Cr18::kConteudo, ConteudoRemessa(sorteio)).bytes();
    }
  }
}

}  // namespace tremvik::sample
