#pragma once

#include <cstdint>

#include "checks/verdict.h"
#include "layout/cr01.h"

namespace tremvik {

/// Checks the master record's fields in layout order. When all pass, `QuantidadeDeclaracoes` receives Q05.
Verdict ValidarCR01(const Record<Cr01>& r, std::int16_t& QuantidadeDeclaracoes);

}  // namespace tremvik
