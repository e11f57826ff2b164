#include "layout/int16.h"

#include <cmath>
#include <limits>

#include "host/runtime_error.h"

namespace tremvik {

std::int16_t ToInt16(double number) {
  const double rounded = std::nearbyint(number);
  if (!(rounded >= std::numeric_limits<std::int16_t>::min() &&
        rounded <= std::numeric_limits<std::int16_t>::max())) {
    throw RuntimeError(erro::kEstouro);
  }
  return static_cast<std::int16_t>(rounded);
}

void Raise(std::int16_t& counter) { counter = ToInt16(counter + 1.0); }

}  // namespace tremvik
