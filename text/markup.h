// Texts within HTML and XML.
#pragma once

#include <string>
#include <string_view>

namespace tremvik::text {

/// `Visible` text for the content of an element or an attribute in quotes: never markup, and no character
/// that XML 1.0 forbids.
[[nodiscard]] std::string Markup(std::string_view text);

}  // namespace tremvik::text
