// Whether a text keeps to the rules of its form.
#pragma once

#include <string_view>

namespace tremvik::fuzz {

/// True for UTF-8 without control characters other than the ends of lines (LF, CR).
[[nodiscard]] bool IsPlainText(std::string_view text);

/// True for UTF-8 without control characters other than the ends of lines, in which every "<" begins a tag, a
/// comment or a declaration, each tag is closed in its turn and every "&" begins an entity. Elements of HTML
/// that have no content need no end; what stands in `style` and `script` is not looked at.
[[nodiscard]] bool IsWellFormedMarkup(std::string_view text);

}  // namespace tremvik::fuzz
