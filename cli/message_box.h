#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tremvik::cli {

/// How a message is drawn.
struct BoxLook {
  bool framed = false;
  bool colour = false;
  std::size_t width = 100;  ///< cells available
};

/// A message box as text, ending in a line end: framed with its title in the frame and wrapped to the width,
/// or the plain lines of `text`. `style` holds `estilo` bits; `text` parts its lines by CR LF.
[[nodiscard]] std::string RenderBox(std::string_view text, int style, std::string_view title,
                                    const BoxLook& look);

}  // namespace tremvik::cli
