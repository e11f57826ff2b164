#include "records/cfop.h"

#include <array>
#include <string>

#include "checks/period.h"
#include "checks/reasons.h"
#include "records/cfop_sets.h"
#include "records/cfop_validity.h"
#include "records/interstate.h"
#include "records/without_fields.h"
#include "runtime/display.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

using C = Cr10;

constexpr std::array kAtividades{5131400, 5146201, 5241804, 5524701};

// Sequence and structure of one detail just read; the separators are told with an older column here.
Verdict ValidarLeitura(Pass& pass, const Record<Cr10>& r, int lidos, int& CFOPAnteriorCR10) {
  if (r[C::kSeparadores] != kCrLf) {
    return Refuse("CR10-01", r, C::kSeparadores, "Tabela 3, CR=10 Campo - Separadores",
                  "inconsistente, Posição 118");
  }
  if (pass.arquivo.EndOfFile()) {
    return Refuse("CR10-02", pass.registros.RegistroDeclaracao, Cr05::kQ10, "Tabela 2, CR=05 Campo - Q10",
                  "inconsistente, Posição 114")
        .Porque(razao::Lidos(pass.declaracao.QtdeCR10, lidos));
  }
  pass.declaracao.TextoLinha = std::to_string(pass.arquivo.NumeroLinha());
  if (LefRigNumChr(r[C::kCFOP])) {
    return Refuse("CR10-03", r, C::kCFOP, "Tabela 3, CR=10 Campo - CFOP", "Inconsistente, posição 3");
  }
  if (IntVal(r[C::kCFOP]) <= CFOPAnteriorCR10) {
    return Refuse("CR10-04", r, C::kCFOP, "Tabela 3, CR=10 Campo - CFOP",
                  "duplicado ou fora de seqüência, posição 3")
        .Porque(razao::Ordem(SemZeros(CFOPAnteriorCR10), r[C::kCFOP]));
  }
  CFOPAnteriorCR10 = IntVal(r[C::kCFOP]);
  return Accepted;
}

constexpr std::array kValores{
    C::kValorContabil,   C::kBaseCalculo,        C::kImposto,           C::kIsentasNaoTrib, C::kOutras,
    C::kImpostoRetidoST, C::kImpRetSubstitutoST, C::kImpRetSubstituido, C::kOutrosImpostos};

// The description is looked up for those who read it.
void GravarCR10(Pass& pass, const Record<Cr10>& r) {
  const std::string_view ref = pass.registros.RegistroDeclaracao[Cr05::kRef];
  const ShortText cfop = TiraZeros(ref, r[C::kCFOP]);
  Gravador& gravador = pass.componentes.gravador(Kind::kCr10);
  if (!gravador.LeCampos()) return GravarSemCampos<C>(r, kValores, gravador);
  gravador.Campo(C::kCFOP.name, cfop);
  gravador.Campo("Descrição", DescricaoCFOP(pass.fixas, ref, cfop, Conjunto(IntVal(ref))));
  for (const auto& valor : kValores)
    gravador.Campo(valor.name, FomataValor(r[valor]));
  gravador.Gravar();
}

// Adds the record's value to each family of the DIPAM relations that its CFOP belongs to: 0 sales of the
// listed activities, 1 transport, 2 communication, 3 electric energy.
void SomarDipam(const Cfop& cfop, bool atividade, double valor, std::array<double, 4>& somas) {
  constexpr std::array kVendasAte2002{Range{511, 512}, Range{514, 515}};
  constexpr std::array kVendas{Range{5101, 5104}};
  constexpr auto kEnergiaDe2003 = Joined(kEnergia, std::array{Range{5153, 5153}, Range{6153, 6153}});
  constexpr auto kEnergiaDe2008 = Joined(kEnergiaDe2003, std::array{Range{5360, 5360}});
  if (cfop.ref <= 200212) {
    if (In(kVendasAte2002, cfop.l3) && atividade) somas[0] += valor;
    if (In(kTransporteAte2002, cfop.l3)) somas[1] += valor;
    if (In(kComunicacaoAte2002, cfop.l3)) somas[2] += valor;
    if (In(kEnergiaAte2002, cfop.l3)) somas[3] += valor;
    return;
  }
  if (In(kVendas, cfop.l4) && atividade) somas[0] += valor;
  if (In(kTransporte, cfop.l4)) somas[1] += valor;
  if (In(kComunicacao, cfop.l4)) somas[2] += valor;
  if (cfop.ref <= 200712 ? In(kEnergiaDe2003, cfop.l4) : In(kEnergiaDe2008, cfop.l4)) somas[3] += valor;
}

void Somar(const Record<Cr10>& r, const Cfop& cfop, const Record<Cr05>& cabecalho, Acumuladores& somas) {
  const double valor = Val(r[C::kBaseCalculo]) + Val(r[C::kIsentasNaoTrib]) + Val(r[C::kOutras]);
  if (cfop.l1 == 1) somas.SomaEntradasCR10 += valor;
  if (cfop.l1 > 4 && cfop.l1 < 8) somas.SomaSaidasCR10 += valor;
  SomarDipam(cfop, In(kAtividades, IntVal(cabecalho[Cr05::kCNAE])), valor, somas.SomaDipamCR10);
}

}  // namespace

Verdict ValidarCR10(Pass& pass) {
  Record<Cr10>& r = pass.registros.RegistroCR10;
  EstadoDeclaracao& declaracao = pass.declaracao;
  int CFOPAnteriorCR10 = 0;
  for (int i = 0; i < declaracao.QtdeCR10; ++i) {
    pass.arquivo.Next(r);
    if (auto refused = ValidarLeitura(pass, r, i, CFOPAnteriorCR10)) return refused;
    const Cfop cfop(r, pass.registros.RegistroDeclaracao);
    if (auto refused = ValidarCamposCR10(pass, cfop)) return refused;
    if (auto refused = ValidarCruzadoCR10(pass, cfop)) return refused;
    GravarCR10(pass, r);
    Somar(r, cfop, pass.registros.RegistroDeclaracao, declaracao.acumuladores);
    if (declaracao.QtdePendenteCR14 > 0) {
      if (auto refused = ValidarCR14(pass)) return refused;
      declaracao.QtdePendenteCR14 = 0;
    }
  }
  return Accepted;
}

}  // namespace tremvik
