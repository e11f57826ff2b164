#pragma once

#include <string>
#include <string_view>

#include "checks/rule_code.h"
#include "host/diagnostics.h"
#include "layout/field.h"

namespace tremvik {

/// Where a fault stands in the file, its value kept because the line is not.
struct Place {
  int linha = 0;  ///< 0 where the fault belongs to no line
  std::string_view registro;
  FieldInfo campo{};
  std::string valor;
};

/// A fault that a pass over the whole file found.
struct FileFault {
  RuleCode regra;
  std::string mensagem;
  Place place;
  std::string porque = {};  ///< the reason in figures; empty for none

  /// The same for the host, valid as long as this object.
  [[nodiscard]] FaultLocation Where() const {
    const FieldInfo& campo = place.campo;
    return {place.linha, place.registro, campo.name, campo.position, campo.width,
            place.valor, regra,          mensagem,   porque};
  }
};

}  // namespace tremvik
