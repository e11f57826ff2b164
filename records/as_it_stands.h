#pragma once

#include "records/pass.h"
#include "runtime/text.h"

namespace tremvik {

/// Hands a record whose content has no rules to its writer: the whole content as the one field "Registro".
template <typename R>
void GravarComoEsta(const Record<R>& r, Gravador& gravador) {
  Utf8Buffer buffer;
  if (gravador.LeCampos()) gravador.Campo("Registro", Utf8(r.content(), buffer));
  gravador.Gravar();
}

}  // namespace tremvik
