// The desktop runtime's small integers: checked, never narrowed in silence.
#pragma once

#include <cstdint>

namespace tremvik {

/// The number as a 16-bit integer, halves rounded to the even neighbour. Raises error 6 outside
/// -32768..32767.
[[nodiscard]] std::int16_t ToInt16(double number);

/// Adds 1. Raises error 6 past 32767 and then leaves the counter as it was.
void Increment(std::int16_t& counter);

/// The number as a byte, halves rounded to the even neighbour. Raises error 6 outside 0..255.
[[nodiscard]] std::uint8_t ToByte(double number);

}  // namespace tremvik
