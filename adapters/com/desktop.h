// The desktop as the component sees it: message boxes and pointer, the component's folder and the per-user
// settings, and a debugger's log.
#pragma once

#include <string>
#include <string_view>

#include "adapters/com/win_files.h"
#include "host/application.h"
#include "host/diagnostics.h"
#include "host/screen.h"

namespace tremvik::com {

/// Message boxes modal to the host's active window. Where none can be shown, a question is answered No and
/// all goes on as if the rest had been seen: a fault stays in `Mensagem`.
class DesktopScreen final : public Screen {
 public:
  /// Files that the run keeps between two passes are let go before a box: none opens its file after one.
  explicit DesktopScreen(WinFiles& files) : files_(files) {}
  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int pointer) override;

 private:
  WinFiles& files_;
};

/// The library's own folder, the settings where the desktop runtime keeps them (HKCU\Software\VB and VBA
/// Program Settings\APPLICATION\SECTION, value KEY), and the temporary database of the last run in this
/// process.
struct DesktopApplication final : Application {
  std::string AppPath() override;
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  std::string CaminhoBaseTemp() override;
  void GuardarCaminhoBaseTemp(std::string_view caminho) override;
};

/// Tells a debugger where a fault really is; nobody else sees it.
struct DebuggerLog final : Diagnostics {
  void Inconsistencia(const FaultLocation& where) override;
  void Duvida(const FaultLocation& where) override;
};

/// The full path of this library's own file.
[[nodiscard]] std::wstring LibraryPath();

}  // namespace tremvik::com
