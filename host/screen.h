#pragma once

#include <string_view>

namespace tremvik {

/// Style bits of a message box, added up (324 = Yes/No, information icon, second button default).
namespace estilo {
inline constexpr int kSimNao = 4;
inline constexpr int kCritico = 16;
inline constexpr int kInformacao = 64;
inline constexpr int kSegundoBotaoPadrao = 256;
}  // namespace estilo

/// What a message box answers.
namespace resposta {
inline constexpr int kOk = 1;
inline constexpr int kSim = 6;
inline constexpr int kNao = 7;
}  // namespace resposta

/// Shapes of the screen's mouse pointer.
namespace ponteiro {
inline constexpr int kPadrao = 0;
inline constexpr int kSeta = 1;
}  // namespace ponteiro

/// The user's screen: modal message boxes and the mouse pointer.
struct Screen {
  virtual ~Screen() = default;
  /// Shows `text` (UTF-8, lines parted by CR LF) modally; `style` holds `estilo` bits. Returns the button
  /// pressed, a `resposta` value. Raises run-time errors of the platform.
  virtual int MsgBox(std::string_view text, int style, std::string_view title) = 0;
  /// Sets the mouse pointer to a `ponteiro` value.
  virtual void SetPointer(int pointer) = 0;
};

}  // namespace tremvik
