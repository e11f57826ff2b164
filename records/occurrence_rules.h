// The rules of one occurrence record, in the groups in which they apply.
#pragma once

#include <string_view>

#include "layout/cr05.h"
#include "layout/cr20.h"
#include "records/pass.h"
#include "records/state.h"
#include "runtime/display.h"

namespace tremvik {

/// An occurrence's sub-item cut in the ways in which the rules look at it. Of "00223", `numero` is 223 and so
/// is `right3`; of "01499", `numero` is 1499 and `right3` 499.
struct SubItem {
  explicit SubItem(const Record<Cr20>& r);

  std::string_view codigo;  ///< the five characters
  std::string_view right2;  ///< the last two, compared as text
  int right3;               ///< the last three as a number
  int numero;               ///< all five as a number

  /// True when the code lies, as text, between "00704" and "00707".
  [[nodiscard]] bool Entre704e707() const { return codigo >= "00704" && codigo <= "00707"; }
};

/// The sub-items 218, 219, 729 and 730 that a declaration has shown so far.
struct SubItensVistos {
  bool VistoSubItem218 = false;
  bool VistoSubItem219 = false;
  bool VistoSubItem729 = false;
  bool VistoSubItem730 = false;
};

/// Quantities that a period does not know yet.
Verdict ValidarQuantidadesDoPeriodo(const Record<Cr20>& r, const SubItem& sub_item, int ref);

/// Sub-items that a period, a declaration or a contributor must not use.
Verdict ValidarSubItemDoPeriodo(const Record<Cr20>& r, const SubItem& sub_item, const Record<Cr05>& cabecalho,
                                int ref, SubItensVistos& vistos);

/// Quantities that a sub-item must not announce or must announce.
Verdict ValidarQuantidadesDoSubItem(const Record<Cr20>& r, const SubItem& sub_item);

/// What orders the occurrences of a declaration: the sub-item's code and the kind of operations.
[[nodiscard]] ShortText ChaveCR20(const Record<Cr20>& r);

/// Field checks; when all pass, the pending quantities of `ocorrencia` are set.
Verdict ValidarCamposCR20(const Pass& pass, EstadoOcorrencia& ocorrencia);

/// Checks of the fields against each other.
Verdict ValidarCruzadoCR20(const Record<Cr20>& r, const SubItem& sub_item);

}  // namespace tremvik
