#pragma once

#include <string_view>

namespace tremvik {

/// True when `text` is no valid date AAAAMMDD or, at six characters, no valid reference period AAAAMM. The
/// day is the last two characters, so a period's month is tested as a day too, which it always passes. Every
/// fourth year is a leap year: there is no century rule.
[[nodiscard]] bool ValidarData(std::string_view text);

/// True when `text` is no valid time HHMMSS; the hour 24 is valid with any minutes and seconds. Raises error
/// 6 where a part is a number outside 0..255.
[[nodiscard]] bool ValidarHora(std::string_view text);

/// The last day of a month (1 to 12) by the calendar, century rule included.
[[nodiscard]] int UltimoDia(int ano, int mes);

}  // namespace tremvik
