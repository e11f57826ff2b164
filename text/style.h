// Colours of a rendering.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tremvik::text {

/// What a text for people is written on.
struct Look {
  bool colour = false;
  std::size_t width = 100;  ///< cells available
};

/// The parts of a rendering that may be coloured.
enum class Style : std::uint8_t { kPlain, kBold, kDim, kFault, kGood };
/// `text` in that style, or as it is where `colour` is off.
[[nodiscard]] std::string Styled(std::string_view text, Style style, bool colour);
/// The lines of `Wrap` at the look's width, each in that style and ended by LF.
[[nodiscard]] std::string StyledLines(std::string_view text, Style style, const Look& look);

}  // namespace tremvik::text
