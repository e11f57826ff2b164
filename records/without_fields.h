#pragma once

#include <span>

#include "host/components.h"
#include "layout/record.h"
#include "runtime/display.h"

namespace tremvik {

/// Gives a record to a writer that reads no fields. Of the forms that other writers would read only those of
/// `valores` can fail: they raise what they would there.
template <typename R>
void GravarSemCampos(const Record<R>& r, std::span<const Field<R>> valores, Gravador& gravador) {
  for (const Field<R>& valor : valores) {
    if (!ValorSimples(r[valor])) (void)FomataValor(r[valor]);
  }
  gravador.Gravar();
}

}  // namespace tremvik
