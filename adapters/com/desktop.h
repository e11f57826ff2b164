// The desktop as the component sees it: message boxes and pointer, the component's folder and the per-user
// settings, and a debugger's log.
#pragma once

#include <string>
#include <string_view>

#include "host/application.h"
#include "host/diagnostics.h"
#include "host/screen.h"

namespace tremvik::com {

/// Message boxes modal to the host's active window.
struct DesktopScreen final : Screen {
  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int pointer) override;
};

/// The library's own folder, and the settings where the desktop runtime keeps them:
/// HKCU\Software\VB and VBA Program Settings\APPLICATION\SECTION, value KEY.
struct DesktopApplication final : Application {
  std::string AppPath() override;
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
};

/// Tells a debugger where a fault really is; nobody else sees it.
struct DebuggerLog final : Diagnostics {
  void Inconsistencia(const FaultLocation& where) override;
  void Duvida(const FaultLocation& where) override;
};

/// The full path of this library's own file.
[[nodiscard]] std::wstring LibraryPath();

}  // namespace tremvik::com
