#pragma once

#include <string_view>

#include "host/diagnostics.h"
#include "layout/field.h"
#include "runtime/display.h"

namespace tremvik {

/// Where a fault stands in the file, its value kept because the line is not.
struct Place {
  int linha = 0;
  std::string_view registro;
  FieldInfo campo{};
  ShortText valor;

  /// The same for the host, valid as long as this object.
  [[nodiscard]] FaultLocation Where() const {
    return {linha, registro, campo.name, campo.position, campo.width, valor};
  }
};

}  // namespace tremvik
