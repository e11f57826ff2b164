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

constexpr int kSempre = 0;
constexpr int kAinda = 999912;

// Who may use a sub-item: taxpayers registered under "8", the others, or all.
enum class Uso : std::uint8_t { kComum, kOito, kTodos };
using enum Uso;
using enum Detalhamento;

struct SubItem {
  std::string_view codigo;
  char propria_ou_st;
  int de;
  int ate;
  Detalhamento detalhamento = kNenhum;
  Uso uso = kComum;
  // At most one sub-item of a group stands in a declaration; 0 is no group.
  int grupo = 0;
};

constexpr std::array<SubItem, 82> kSubItens{{
    {"00201", '0', kSempre, 201004},
    {"00201", '1', kSempre, kAinda},
    {"00202", '0', kSempre, kAinda},
    {"00203", '0', kSempre, 201004},
    {"00204", '0', kSempre, 201004},
    {"00205", '0', kSempre, 201112},
    {"00205", '1', kSempre, 201112},
    {"00206", '0', kSempre, kAinda},
    {"00210", '0', 200201, kAinda, kSubstituto},
    {"00210", '1', 200201, kAinda, kSubstituto},
    {"00211", '0', 200201, kAinda, kSubstituto},
    {"00211", '1', 200201, kAinda, kSubstituto},
    {"00218", '1', kSempre, kAinda, kNenhum, kComum, 1},
    {"00219", '1', kSempre, kAinda, kNenhum, kComum, 1},
    {"00220", '0', 201004, kAinda, kAutorizacao},
    {"00220", '1', 200801, kAinda, kAutorizacao},
    {"00221", '0', 201004, kAinda, kAutorizacao},
    {"00221", '1', 200801, kAinda, kAutorizacao},
    {"00222", '0', kSempre, kAinda},
    {"00223", '0', 201201, kAinda, kAutorizacao},
    {"00223", '1', 201201, kAinda, kAutorizacao},
    {"00224", '0', 201201, kAinda, kNenhum, kOito},
    {"00224", '1', 201201, kAinda, kNenhum, kOito},
    {"00225", '0', 201201, kAinda},
    {"00225", '1', 201201, kAinda},
    {"00226", '1', 201301, kAinda},
    {"00299", '0', kSempre, kAinda, kNenhum, kTodos},
    {"00299", '1', kSempre, kAinda, kNenhum, kTodos},
    {"00301", '0', kSempre, kAinda},
    {"00302", '0', kSempre, kAinda},
    {"00312", '0', kSempre, kAinda},
    {"00399", '0', kSempre, kAinda, kNenhum, kTodos},
    {"00399", '1', kSempre, kAinda, kNenhum, kTodos},
    {"00701", '0', 200201, 201112, kSubstituido},
    {"00701", '1', 200201, kAinda, kSubstituido},
    {"00702", '0', 200201, 201004, kSubstituido},
    {"00702", '1', 200201, kAinda, kSubstituido},
    {"00703", '0', kSempre, 201004},
    {"00703", '1', kSempre, kAinda},
    {"00704", '0', kSempre, 201004, kIE},
    {"00704", '1', kSempre, kAinda},
    {"00705", '0', kSempre, 201004, kIE},
    {"00705", '1', kSempre, kAinda},
    {"00706", '0', kSempre, 201004, kIE},
    {"00706", '1', kSempre, kAinda},
    {"00707", '0', kSempre, 201004, kIE},
    {"00707", '1', kSempre, kAinda},
    {"00708", '0', kSempre, kAinda},
    {"00715", '0', kSempre, 201112},
    {"00715", '1', kSempre, 201112},
    {"00722", '0', kSempre, kAinda},
    {"00729", '0', 200201, kAinda, kIE, kComum, 1},
    {"00729", '1', kSempre, kAinda, kNenhum, kComum, 1},
    {"00730", '0', 200201, kAinda, kIE, kComum, 1},
    {"00730", '1', kSempre, kAinda, kNenhum, kComum, 1},
    {"00740", '0', 201004, kAinda, kAutorizacao},
    {"00740", '1', 200801, kAinda, kAutorizacao},
    {"00741", '0', 201004, kAinda, kAutorizacao},
    {"00741", '1', 200801, kAinda, kAutorizacao},
    {"00742", '0', 201001, kAinda},
    {"00742", '1', kSempre, kAinda},
    {"00744", '0', 201201, kAinda, kAutorizacao},
    {"00744", '1', 201201, kAinda, kAutorizacao},
    {"00745", '0', 201201, kAinda, kAutorizacao},
    {"00745", '1', 201201, kAinda, kAutorizacao},
    {"00746", '0', 201201, kAinda, kNenhum, kOito},
    {"00746", '1', 201201, kAinda, kNenhum, kOito},
    {"00747", '0', 201201, kAinda},
    {"00747", '1', 201201, kAinda},
    {"00748", '1', 201301, kAinda},
    {"00799", '0', kSempre, kAinda, kNenhum, kTodos},
    {"00799", '1', kSempre, kAinda, kNenhum, kTodos},
    {"00801", '0', kSempre, kAinda},
    {"00802", '0', kSempre, kAinda},
    {"00812", '0', kSempre, kAinda},
    {"00899", '0', kSempre, kAinda, kNenhum, kTodos},
    {"00899", '1', kSempre, kAinda, kNenhum, kTodos},
    {"01401", '0', kSempre, kAinda},
    {"01402", '0', kSempre, kAinda},
    {"01406", '0', kSempre, kAinda},
    {"01499", '0', kSempre, kAinda, kNenhum, kTodos},
    {"01499", '1', kSempre, kAinda, kNenhum, kTodos},
}};

bool Permitido(const SubItem& subitem, const Contexto& contexto) {
  if (contexto.ref < subitem.de || contexto.ref > subitem.ate) return false;
  if (contexto.regime == 4 && subitem.propria_ou_st == '0') return false;
  return subitem.uso == kTodos || (subitem.uso == kOito) == contexto.ie.starts_with('8');
}

using Escolhidos = std::vector<const SubItem*>;

// Takes up to `quantidade` candidates that meet `condicao`, in their order.
template <typename Condicao>
void Escolher(const Escolhidos& candidatos, int quantidade, Condicao condicao, Escolhidos& escolhidos) {
  for (const SubItem* candidato : candidatos) {
    if (quantidade == 0) return;
    const bool excluido = std::ranges::any_of(escolhidos, [candidato](const SubItem* outro) {
      return outro == candidato || (outro->grupo != 0 && outro->grupo == candidato->grupo);
    });
    if (excluido || !condicao(*candidato)) continue;
    escolhidos.push_back(candidato);
    --quantidade;
  }
}

// One sub-item for each kind of detail record, and one of free text.
void EscolherTodosOsTipos(const Escolhidos& candidatos, Escolhidos& escolhidos) {
  for (const auto detalhamento : {kIE, kSubstituto, kSubstituido, kAutorizacao}) {
    const auto detalhado = [detalhamento](const SubItem& s) { return s.detalhamento == detalhamento; };
    Escolher(candidatos, 1, detalhado, escolhidos);
  }
  const auto livre = [](const SubItem& s) { return s.codigo.ends_with("99"); };
  Escolher(candidatos, 1, livre, escolhidos);
}

Escolhidos EscolherSubItens(Sorteio& sorteio, const Contexto& contexto) {
  Escolhidos candidatos;
  for (const SubItem& subitem : kSubItens) {
    if (Permitido(subitem, contexto)) candidatos.push_back(&subitem);
  }
  sorteio.Embaralhar(candidatos);
  Escolhidos escolhidos;
  if (contexto.completa) EscolherTodosOsTipos(candidatos, escolhidos);
  const int ref = contexto.ref;
  const auto no_limite = [ref](const SubItem& s) { return s.de == ref || s.ate == ref; };
  const auto qualquer = [](const SubItem&) { return true; };
  Escolher(candidatos, 4, no_limite, escolhidos);
  Escolher(candidatos, sorteio.Entre(0, 4), qualquer, escolhidos);
  return escolhidos;
}

int SortearQuantidade(Sorteio& sorteio, const SubItem& subitem) {
  if (subitem.detalhamento == kNenhum) return 0;
  const int quantidade = sorteio.Entre(1, 3);
  return subitem.codigo == "00729" ? 1 : quantidade;
}

DetalheOcorrencia SortearDetalhe(Sorteio& sorteio, const SubItem& subitem, const Contexto& contexto) {
  DetalheOcorrencia detalhe{.valor = sorteio.Entre<std::int64_t>(1, 9'000'000)};
  detalhe.chave = subitem.detalhamento == kAutorizacao
                      ? SortearAutorizacao(sorteio, subitem.codigo, detalhe.valor, contexto.ie)
                      : SortearIE(sorteio);
  // The sub-items that stand for single invoices name them; those for whole periods must not.
  const bool por_nota = subitem.codigo == "00210" || subitem.codigo == "00701";
  if (por_nota) detalhe.nf = sorteio.Entre<std::int64_t>(1, 999'999'999);
  detalhe.inicio = sorteio.Entre(contexto.ref / 100 * 100 + 1, contexto.ref);
  detalhe.fim = sorteio.Entre(detalhe.inicio, contexto.ref);
  return detalhe;
}

Ocorrencia Detalhar(Sorteio& sorteio, const SubItem& subitem, const Contexto& contexto) {
  Ocorrencia ocorrencia{.subitem = subitem.codigo,
                        .propria_ou_st = subitem.propria_ou_st,
                        .detalhamento = subitem.detalhamento};
  const int quantidade = SortearQuantidade(sorteio, subitem);
  for (int i = 0; i < quantidade; ++i) {
    ocorrencia.detalhes.push_back(SortearDetalhe(sorteio, subitem, contexto));
    ocorrencia.valor += ocorrencia.detalhes.back().valor;
  }
  if (quantidade == 0) ocorrencia.valor = sorteio.Entre<std::int64_t>(1, 9'000'000);
  std::ranges::sort(ocorrencia.detalhes, {}, &DetalheOcorrencia::chave);
  return ocorrencia;
}

struct Textos {
  std::string_view base_legal;
  std::string_view descricao;
};

constexpr std::array<Textos, 5> kTextos{{
    {"Art. 72, § 1º, do Regulamento do ICMS", "Estorno de crédito de mercadoria saída com isenção"},
    {"Convênio ICMS 52/92, cláusula primeira", "Remessa à área de livre comércio não comprovada no prazo"},
    {"Lei do ICMS, artigo 38, inciso II", "Crédito extemporâneo de energia elétrica da produção"},
    {"Resolução conjunta nº 3, item \"b\"", "Diferença de alíquota apurada em revisão; guia paga à parte"},
    {"Decisão do processo 1.204/2011", "Compensação autorizada: café, açúcar e pães (3ª parcela)"},
}};

// The texts above hold letters of Latin-1 only, which Windows-1252 has at the same places.
std::string ParaWindows1252(std::string_view utf8) {
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    const bool dois_bytes = byte == 0xC2 || byte == 0xC3;
    bytes += dois_bytes
                 ? static_cast<char>((byte & 0x03U) << 6U | (static_cast<unsigned char>(utf8[++i]) & 0x3FU))
                 : utf8[i];
  }
  return bytes;
}

std::string MontarDetalhe(Detalhamento detalhamento, const DetalheOcorrencia& detalhe) {
  switch (detalhamento) {
    case kNenhum:
      break;
    case kIE:
      return Montador<Cr25>().Texto(Cr25::kIE, detalhe.chave).Numero(Cr25::kValor, detalhe.valor).bytes();
    case kSubstituto:
      return Montador<Cr26>()
          .Texto(Cr26::kIESubstituto, detalhe.chave)
          .Numero(Cr26::kNF, detalhe.nf)
          .Numero(Cr26::kDataInicio, detalhe.inicio)
          .Numero(Cr26::kDataFim, detalhe.fim)
          .Numero(Cr26::kValor, detalhe.valor)
          .bytes();
    case kSubstituido:
      return Montador<Cr27>()
          .Texto(Cr27::kIESubstituido, detalhe.chave)
          .Numero(Cr27::kNF, detalhe.nf)
          .Numero(Cr27::kValor, detalhe.valor)
          .bytes();
    case kAutorizacao:
      return Montador<Cr28>()
          .Texto(Cr28::kCodAutorizacao, detalhe.chave)
          .Numero(Cr28::kValor, detalhe.valor)
          .bytes();
  }
  return {};
}

}  // namespace

std::vector<Ocorrencia> SortearOcorrencias(Sorteio& sorteio, const Contexto& contexto) {
  auto escolhidos = EscolherSubItens(sorteio, contexto);
  // A sub-item of free text may stand several times.
  const bool repetir = sorteio.Chance(30);
  if (repetir && !escolhidos.empty() && escolhidos.back()->codigo.ends_with("99")) {
    escolhidos.push_back(escolhidos.back());
  }
  std::ranges::sort(escolhidos);  // the table is in the file's order
  std::vector<Ocorrencia> ocorrencias;
  for (const SubItem* subitem : escolhidos)
    ocorrencias.push_back(Detalhar(sorteio, *subitem, contexto));
  return ocorrencias;
}

void Escrever(const Ocorrencia& ocorrencia, Sorteio& sorteio, std::string& saida) {
  Montador<Cr20> registro;
  registro.Texto(Cr20::kCodSubItem, ocorrencia.subitem)
      .Texto(Cr20::kPropriaOuST, {&ocorrencia.propria_ou_st, 1})
      .Numero(Cr20::kValor, ocorrencia.valor);
  const auto quantidade = [&](Detalhamento detalhamento) {
    return ocorrencia.detalhamento == detalhamento ? static_cast<std::int64_t>(ocorrencia.detalhes.size())
                                                   : 0;
  };
  registro.Numero(Cr20::kQ25, quantidade(kIE))
      .Numero(Cr20::kQ26, quantidade(kSubstituto))
      .Numero(Cr20::kQ27, quantidade(kSubstituido))
      .Numero(Cr20::kQ28, quantidade(kAutorizacao));
  const bool com_texto = ocorrencia.subitem.ends_with("99");
  const Textos textos = com_texto ? sorteio.Um(kTextos) : Textos{};
  registro.Texto(Cr20::kFLegal, ParaWindows1252(textos.base_legal))
      .Texto(Cr20::kOcorrencia, ParaWindows1252(textos.descricao));
  saida += registro.bytes();
  for (const auto& detalhe : ocorrencia.detalhes)
    saida += MontarDetalhe(ocorrencia.detalhamento, detalhe);
}

}  // namespace tremvik::sample
