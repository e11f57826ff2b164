#include "adapters/com/desktop.h"

#include <algorithm>
#include <mutex>
#include <string>

#include "adapters/com/errors.h"
#include "adapters/com/registry.h"
#include "adapters/com/text.h"

namespace tremvik::com {
namespace {

// A box ends its text at the first NUL, which a faulty file may put into it; what follows must be seen too.
std::wstring Shown(std::string_view utf8) {
  std::wstring text = Wide(utf8);
  std::ranges::replace(text, L'\0', L' ');
  return text;
}

void Log(std::string_view what, const FaultLocation& where) {
  const std::string line = "DllTremvik: " + std::string(what) + ", linha " + std::to_string(where.linha) +
                           ", CR=" + std::string(where.registro) + ", campo " + std::string(where.campo) +
                           ", posição " + std::to_string(where.posicao) + "\r\n";
  OutputDebugStringW(Wide(line).c_str());
}

HMODULE ThisLibrary() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&ThisLibrary), &module);
  return module;
}

// A path that all objects of the library know, in whichever apartment.
class SharedPath {
 public:
  static SharedPath& Of() {
    static SharedPath path;
    return path;
  }
  std::string Get() {
    const std::lock_guard lock(mutex_);
    return path_;
  }
  void Set(std::string_view path) {
    const std::lock_guard lock(mutex_);
    path_ = path;
  }

 private:
  std::mutex mutex_;
  std::string path_;
};

}  // namespace

int DesktopScreen::MsgBox(std::string_view text, int style, std::string_view title) {
  files_.LetGo();
  auto* const owner = GetActiveWindow();
  // Without a window of its own to be modal to, a box still keeps the thread's windows from input.
  const UINT modal = owner ? MB_APPLMODAL : MB_TASKMODAL;
  const int answer =
      MessageBoxW(owner, Shown(text).c_str(), Shown(title).c_str(), static_cast<UINT>(style) | modal);
  if (answer > 0) return answer;
  return (style & MB_TYPEMASK) == MB_YESNO ? IDNO : IDOK;
}

void DesktopScreen::SetPointer(int pointer) {
  POINT place{};
  GetCursorPos(&place);
  auto* const below = WindowFromPoint(place);
  const bool own = below && GetWindowThreadProcessId(below, nullptr) == GetCurrentThreadId();
  SetCursor(LoadCursorW(nullptr, IDC_ARROW));
  if (pointer != ponteiro::kPadrao || !own) return;
  SendMessageW(below, WM_SETCURSOR, reinterpret_cast<WPARAM>(below), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
}

std::wstring LibraryPath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(ThisLibrary(), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw ErrorOfSystem(GetLastError());
    if (length < path.size()) return path.substr(0, length);
    path.resize(path.size() * 2);
  }
}

std::string DesktopApplication::AppPath() {
  const std::wstring library = LibraryPath();
  return Utf8(library.substr(0, library.find_last_of(L'\\')));
}

std::string DesktopApplication::GetSetting(std::string_view application, std::string_view section,
                                           std::string_view key, std::string_view fallback) {
  const std::wstring folder =
      L"Software\\VB and VBA Program Settings\\" + Wide(application) + L"\\" + Wide(section);
  return Utf8(ReadText(HKEY_CURRENT_USER, folder, Wide(key)).value_or(Wide(fallback)));
}

std::string DesktopApplication::CaminhoBaseTemp() { return SharedPath::Of().Get(); }
void DesktopApplication::GuardarCaminhoBaseTemp(std::string_view caminho) { SharedPath::Of().Set(caminho); }

void DebuggerLog::Inconsistencia(const FaultLocation& where) { Log("inconsistência", where); }
void DebuggerLog::Duvida(const FaultLocation& where) { Log("dúvida", where); }

}  // namespace tremvik::com
