// The four kinds of details of an occurrence. Each validator reads the details that the occurrence announces,
// checks them, hands each accepted one to its writer together with the occurrence's sub-item and kind, and
// adds its value to the occurrence's sum.
#pragma once

#include <string>
#include <string_view>

#include "layout/cr20.h"
#include "records/occurrence_rules.h"
#include "records/pass.h"

namespace tremvik {

/// State registrations.
Verdict ValidarCR25(Pass& pass, EstadoOcorrencia& ocorrencia);
/// Substitute taxpayers.
Verdict ValidarCR26(Pass& pass, const SubItem& sub_item, EstadoOcorrencia& ocorrencia);
/// Substituted taxpayers.
Verdict ValidarCR27(Pass& pass, const SubItem& sub_item, EstadoOcorrencia& ocorrencia);
/// Authorizations of accumulated credit.
Verdict ValidarCR28(Pass& pass, EstadoOcorrencia& ocorrencia);

/// What orders the details that have an invoice number, IE and NF, as people read it.
[[nodiscard]] std::string ChaveComNF(std::string_view chave);

/// Gives a writer the fields that name an occurrence: the sub-item as "002.23" and the kind of operations.
void GravarChaveOcorrencia(const Record<Cr20>& ocorrencia, Gravador& gravador);

}  // namespace tremvik
