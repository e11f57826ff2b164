#include "runtime/int16.h"

#include <cmath>
#include <limits>

#include "host/runtime_error.h"

namespace tremvik {
namespace {

template <typename Integer>
Integer Checked(double number) {
  const double rounded = std::nearbyint(number);
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())) {
    throw RuntimeError(erro::kEstouro);
  }
  return static_cast<Integer>(rounded);
}

}  // namespace

std::int16_t ToInt16(double number) { return Checked<std::int16_t>(number); }

void Increment(std::int16_t& counter) {
  if (counter == std::numeric_limits<std::int16_t>::max()) throw RuntimeError(erro::kEstouro);
  ++counter;
}

std::uint8_t ToByte(double number) { return Checked<std::uint8_t>(number); }

}  // namespace tremvik
