#include <array>
#include <span>

#include "checks/period.h"
#include "checks/reasons.h"
#include "records/occurrence_rules.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {

using C = Cr20;

Verdict ValidarQuantidadesDoPeriodo(const Record<Cr20>& r, const SubItem& sub_item, int ref) {
  constexpr Range k704a707{704, 707};
  constexpr Range kDe2002{200201, kSemFim};
  constexpr Range kDe2008{200801, kSemFim};
  if (ref < 200201 && Val(r[C::kQ25]) > 0 && !k704a707.Holds(sub_item.numero)) {
    return Refuse("CR20-05", r, C::kQ25, "Tabela 06, CR=20, Campo - Q25", "Posição 424. Inconsistente ")
        .Porque(razao::Validade("Q25", kDe2002, ref));
  }
  if (ref < 200201 && (Val(r[C::kQ26]) > 0 || Val(r[C::kQ27]) > 0)) {
    return Refuse("CR20-06", r, Val(r[C::kQ26]) > 0 ? C::kQ26 : C::kQ27,
                  "Tabela 06, CR=20, Campo - Q26 _x_Q27", "Posição 428_x_432. Inconsistente ")
        .Porque(razao::Validade("Q26 e Q27", kDe2002, ref));
  }
  if (ref < 200801 && Val(r[C::kQ28]) > 0) {
    return Refuse("CR20-07", r, C::kQ28, "Tabela 06, CR=20, Campo - Q28", "Posição 433_x437. Inconsistente ")
        .Porque(razao::Validade("Q28", kDe2008, ref));
  }
  return Accepted;
}

namespace {

std::string ValidadeDoSubItem(const Record<Cr20>& r, Range periodo, int ref) {
  return razao::Validade("subitem " + Utf8(Mascara(kMascaraSubItem, r[C::kCodSubItem])), periodo, ref);
}

enum class Operacoes { kQuaisquer, kProprias };

// Sub-items (last three digits) that the periods of `ref` refuse, in the order in which they are tested.
struct Vedado {
  RuleCode regra;
  Range ref;
  Operacoes operacoes;
  std::span<const int> sub_itens;
  std::string_view primeiro = "Tabela 06, CR=20, Campo - CódSubitem";
};
constexpr Range Antes(int ref) { return {0, ref - 1}; }
constexpr Range Depois(int ref) { return {ref + 1, kSemFim}; }
constexpr std::array kAte201004{201, 203, 204, 702, 703, 704, 705, 706, 707};
constexpr std::array kCredAcumulado{220, 221, 740, 741};
constexpr std::array k223{223};
constexpr std::array k744{744};
constexpr std::array k745{745};
constexpr std::array k742{742};
constexpr std::array k223_744_745{223, 744, 745};
constexpr std::array k715{715};
constexpr std::array kVedados{
    Vedado{"CR20-08", Depois(201004), Operacoes::kProprias, kAte201004},
    Vedado{"CR20-09", Antes(201004), Operacoes::kProprias, kCredAcumulado},
    Vedado{"CR20-10", Antes(201004), Operacoes::kProprias, k223,
           "Tabela 06, CR=20, Campo - CódSubitem '002.23'"},
    Vedado{"CR20-11", Antes(201004), Operacoes::kProprias, k744,
           "Tabela 06, CR=20, Campo - CódSubitem '007.44'"},
    Vedado{"CR20-12", Antes(201004), Operacoes::kProprias, k745,
           "Tabela 06, CR=20, Campo - CódSubitem '007.45'"},
    Vedado{"CR20-13", Antes(201001), Operacoes::kProprias, k742},
    Vedado{"CR20-14", Antes(201201), Operacoes::kQuaisquer, k223_744_745},
    Vedado{"CR20-15", Depois(201112), Operacoes::kQuaisquer, k715},
};
// The ones tested after the sub-items that exclude each other.
constexpr std::array k224_746{224, 746};
constexpr std::array k225_747{225, 747};
constexpr std::array k205{205};
constexpr std::array k226_748{226, 748};
constexpr std::array kVedadosDepois{
    Vedado{"CR20-17", Antes(201111), Operacoes::kQuaisquer, k224_746},
    Vedado{"CR20-18", Antes(201201), Operacoes::kQuaisquer, k225_747},
    Vedado{"CR20-19", Depois(201112), Operacoes::kQuaisquer, k205},
    Vedado{"CR20-20", Antes(201301), Operacoes::kQuaisquer, k226_748},
};

// The periods outside the refused ones, which begin or end where the file's periods do.
Range Permitido(const Vedado& vedado) {
  return vedado.ref.last == kSemFim ? Range{0, vedado.ref.first - 1} : Range{vedado.ref.last + 1, kSemFim};
}
Verdict ValidarVedados(const Record<Cr20>& r, const SubItem& sub_item, std::span<const Vedado> vedados,
                       int ref) {
  const bool propria = Val(r[C::kPropriaOuST]) == 0;
  for (const Vedado& vedado : vedados) {
    if (!vedado.ref.Holds(ref) || !In(vedado.sub_itens, sub_item.right3)) continue;
    if (vedado.operacoes == Operacoes::kProprias && !propria) continue;
    return Refuse(vedado.regra, r, C::kCodSubItem, vedado.primeiro,
                  "inconsistente para esta referencia, Posição 3")
        .Porque(ValidadeDoSubItem(r, Permitido(vedado), ref));
  }
  return Accepted;
}

// Sub-items 218, 219, 729 and 730 exclude each other within a declaration; after 219 alone, only 729 is
// refused.
Verdict ValidarExclusao(const Record<Cr20>& r, const SubItem& sub_item, SubItensVistos& vistos) {
  const int n = sub_item.right3;
  vistos.VistoSubItem218 = vistos.VistoSubItem218 || n == 218;
  vistos.VistoSubItem219 = vistos.VistoSubItem219 || n == 219;
  vistos.VistoSubItem729 = vistos.VistoSubItem729 || n == 729;
  vistos.VistoSubItem730 = vistos.VistoSubItem730 || n == 730;
  if ((vistos.VistoSubItem218 && (n == 219 || n == 729 || n == 730)) ||
      (vistos.VistoSubItem219 && n == 729) ||
      (vistos.VistoSubItem729 && (n == 730 || n == 218 || n == 219)) ||
      (vistos.VistoSubItem730 && (n == 218 || n == 219 || n == 729))) {
    return Refuse("CR20-16", r, C::kCodSubItem, "Tabela 6, CR=20, Campo - CódSubitem",
                  "inconsistente, Posição 3");
  }
  return Accepted;
}

// An IE beginning with "8" belongs to a contributor of its own kind, with its own sub-items.
Verdict ValidarContribuinte(const Record<Cr20>& r, const SubItem& sub_item, const Record<Cr05>& cabecalho) {
  constexpr std::array kDoContribuinte8{224, 746, 299, 799, 399, 899};
  constexpr std::array kSoDoContribuinte8{224, 746};
  const bool contribuinte8 = cabecalho[Cr05::kIE].starts_with('8');
  const bool permitido = contribuinte8
                             ? In(kDoContribuinte8, sub_item.right3) || Right(sub_item.codigo, 4) == "1499"
                             : !In(kSoDoContribuinte8, sub_item.right3);
  if (permitido) return Accepted;
  return Refuse("CR20-21", r, C::kCodSubItem, "Tabela 06, CR=20, Campo - CódSubitem",
                "inconsistente para este Contribuinte, Posição 3");
}

}  // namespace

Verdict ValidarSubItemDoPeriodo(const Record<Cr20>& r, const SubItem& sub_item, const Record<Cr05>& cabecalho,
                                int ref, SubItensVistos& vistos) {
  if (auto refused = ValidarVedados(r, sub_item, kVedados, ref)) return refused;
  if (ref > 200112) {
    if (auto refused = ValidarExclusao(r, sub_item, vistos)) return refused;
  }
  if (auto refused = ValidarVedados(r, sub_item, kVedadosDepois, ref)) return refused;
  if (ref > 201112 && sub_item.right3 == 701 && r[C::kPropriaOuST] == "0") {
    return Refuse("CR20-22", r, C::kCodSubItem, "Tabela 06, CR=20, Campo - CódSubitem",
                  "inconsistente para esta referencia, Posição 3")
        .Porque(ValidadeDoSubItem(r, {0, 201112}, ref));
  }
  return ValidarContribuinte(r, sub_item, cabecalho);
}

}  // namespace tremvik
