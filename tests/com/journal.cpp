#include "journal.h"

#include <array>
#include <set>
#include <thread>

#include "adapters/com/text.h"

namespace tremvik::com_test {
namespace {

std::string WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return com::Utf8(std::wstring_view(text).substr(0, static_cast<std::size_t>(length)));
}

bool IsDefault(HWND button) {
  return button && (GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
}

// The style bits that the box on the screen was made with, as far as it shows them.
int StyleOf(HWND box) {
  int style = GetDlgItem(box, IDYES) && GetDlgItem(box, IDNO) ? MB_YESNO : MB_OK;
  if (IsDefault(GetDlgItem(box, IDNO))) style |= MB_DEFBUTTON2;
  HICON icon = nullptr;
  for (HWND child = GetWindow(box, GW_CHILD); child && !icon; child = GetWindow(child, GW_HWNDNEXT)) {
    // A window answers with a number.  NOLINTNEXTLINE(performance-no-int-to-ptr)
    icon = reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0));
  }
  if (!icon) return style;
  if (icon == LoadIconW(nullptr, IDI_HAND)) return style | MB_ICONHAND;
  return style | (icon == LoadIconW(nullptr, IDI_ASTERISK) ? MB_ICONINFORMATION : MB_ICONMASK);
}

void Answer(HWND box, DWORD thread) {
  const int answer = GetDlgItem(box, IDYES) ? Journal::Of().Current(thread).answer : IDOK;
  // Wine has no icons for 32-bit programs, so there they cannot be seen in a box.
  const bool icons = LoadIconW(nullptr, IDI_HAND) != nullptr;
  Journal::Of().Write({{"tipo", "\"mensagem\""},
                       {"texto", Quoted(WindowText(GetDlgItem(box, 0xFFFF)))},
                       {"estilo", std::to_string(StyleOf(box))},
                       {"titulo", Quoted(WindowText(box))},
                       {"icones", icons ? "true" : "false"},
                       {"resposta", std::to_string(answer)}},
                      thread);
  auto* const button = GetDlgItem(box, answer);
  PostMessageW(box, WM_COMMAND, MAKEWPARAM(answer, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

// Answers each box of this process that stands and was not answered yet.
void AnswerAll(std::set<HWND>& answered) {
  std::set<HWND> standing;
  for (HWND box = nullptr; (box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr;) {
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(box, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(box)) continue;
    if (!answered.contains(box)) Answer(box, thread);
    standing.insert(box);
  }
  answered = standing;
}

}  // namespace

Journal& Journal::Of() {
  static Journal journal;
  return journal;
}

void Journal::Start(const Run& run) {
  const std::lock_guard lock(mutex_);
  runs_[GetCurrentThreadId()] = run;
}

Run Journal::Current(DWORD thread) {
  const std::lock_guard lock(mutex_);
  return runs_[thread];
}

void Journal::Write(const std::vector<std::pair<std::string_view, std::string>>& members, DWORD thread) {
  const std::lock_guard lock(mutex_);
  const std::wstring& path = runs_[thread].path;
  if (path.empty()) return;
  std::string line;
  for (const auto& [name, value] : members)
    line += (line.empty() ? "{" : ",") + Quoted(name) + ":" + value;
  line += "}\n";
  auto* const file = _wfopen(path.c_str(), L"ab");
  if (!file) return;
  std::fwrite(line.data(), 1, line.size(), file);
  std::fclose(file);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    std::array<char, 8> escape{c};
    if (c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20)
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
    quoted += escape.data();
  }
  return quoted + '"';
}

void AnswerBoxes(bool answer) {
  static std::jthread watcher;
  if (answer && watcher.joinable()) return;
  watcher = {};  // ends the one that runs
  if (!answer) return;
  watcher = std::jthread([](const std::stop_token& stop) {
    for (std::set<HWND> answered; !stop.stop_requested(); Sleep(2))
      AnswerAll(answered);
  });
}

}  // namespace tremvik::com_test
