// The CFOP of a declaration's period: its display form, its table set, its rules and its description.
#pragma once

#include <string>
#include <string_view>

#include "checks/period.h"
#include "layout/cr05.h"
#include "layout/cr10.h"
#include "records/pass.h"
#include "runtime/display.h"

namespace tremvik {

/// A CFOP detail's code cut in the ways in which the rules look at it. The leading characters are compared as
/// numbers: `l3` of "510200" is 510.
struct Cfop {
  Cfop(const Record<Cr10>& detalhe, const Record<Cr05>& cabecalho);

  std::string_view codigo;     ///< the six characters
  std::string_view ref_texto;  ///< the declaration's period AAAAMM, its six characters
  int ref;                     ///< the same as a number
  int l1, l2, l3, l4;          ///< the first one to four characters
  ShortText exibicao;          ///< "1.102", up to 200212 "1.12" or "1.12.1"
};

/// A message's text with the code behind it.
[[nodiscard]] std::string ComCodigo(std::string_view texto, const Cfop& cfop);

/// When the code holds, told beside a refusal in another period.
[[nodiscard]] std::string ValidadeDoCfop(const Cfop& cfop, Range periodo);

/// The refusal of a code that the tables do not hold for the period.
[[nodiscard]] Refusal ForaDaTabela(RuleCode regra, const Record<Cr10>& r, const Cfop& cfop);

/// The table set of a period AAAAMM: "1" up to 200212, "2" in 2003, "3" from 200401 on.
[[nodiscard]] std::string_view Conjunto(int ref);

/// The code's dotted form for the period `ref` (AAAAMM, compared as text): "1.102", up to "200212" "1.12" or
/// "1.12.1"; empty where the code has another length.
[[nodiscard]] ShortText FormatarCFOP(std::string_view ref, std::string_view codigo);

/// The description of a code in the table set `conjunto`, UTF-8, empty where there is none; valid until the
/// next look-up.
[[nodiscard]] std::string_view DescricaoCFOP(TabelasFixas& fixas, std::string_view ref,
                                             std::string_view codigo, std::string_view conjunto);

/// The rules that follow the numeric test of the CFOP: headings of the old codes, and the tables.
Verdict ValidarCfopNaTabela(const Record<Cr10>& r, const Cfop& cfop, TabelasFixas& fixas);

/// The codes that a period does not have, groups and disabled codes.
Verdict ValidarCfopDoPeriodo(const Record<Cr10>& r, const Cfop& cfop);

/// The codes that regime 4 may use.
Verdict ValidarCfopDoRegime4(const Record<Cr10>& r, const Cfop& cfop);

/// The code that exists from 200801 on, whatever the regime.
Verdict ValidarCfop1360(const Record<Cr10>& r, const Cfop& cfop);

}  // namespace tremvik
