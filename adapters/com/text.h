// Texts at the border: UTF-8 inside, UTF-16 outside.
#pragma once

#include <string>
#include <string_view>

namespace tremvik::com {

/// UTF-8 to UTF-16; bytes that are no UTF-8 become U+FFFD. A surrogate written like a character is one again.
[[nodiscard]] std::wstring Wide(std::string_view utf8);
/// UTF-16 to UTF-8. File names may hold lone surrogates: each is written like a character, for Wide to read.
[[nodiscard]] std::string Utf8(std::wstring_view wide);

}  // namespace tremvik::com
