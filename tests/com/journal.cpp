#include "journal.h"

#include <array>
#include <cstdio>
#include <set>

#include "adapters/com/text.h"

namespace tremvik::com_test {
namespace {

constexpr int kTextControl = 0xFFFF;
constexpr DWORD kPoll = 2;  // milliseconds

std::string WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return com::Utf8(std::wstring_view(text).substr(0, static_cast<std::size_t>(length)));
}

HWND Button(HWND box, int id) { return GetDlgItem(box, id); }

bool IsDefault(HWND button) { return (GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON; }

// The style bits that the box on the screen was made with, as far as it shows them.
int StyleOf(HWND box) {
  int style = 0;
  if (Button(box, IDYES) && Button(box, IDNO)) style |= MB_YESNO;
  if (Button(box, IDNO) && IsDefault(Button(box, IDNO))) style |= MB_DEFBUTTON2;
  HICON icon = nullptr;
  for (HWND child = GetWindow(box, GW_CHILD); child && !icon; child = GetWindow(child, GW_HWNDNEXT)) {
    // A window answers with a number.  NOLINTNEXTLINE(performance-no-int-to-ptr)
    icon = reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0));
  }
  if (!icon) return style;
  if (icon == LoadIconW(nullptr, IDI_HAND)) return style | MB_ICONHAND;
  if (icon == LoadIconW(nullptr, IDI_ASTERISK)) return style | MB_ICONINFORMATION;
  return style | MB_ICONMASK;  // none that the system uses
}

// Wine has no icons for 32-bit programs, so there they cannot be seen in a box.
bool IconsAreSeen() { return LoadIconW(nullptr, IDI_HAND) != nullptr; }

void Answer(HWND box, DWORD thread) {
  const int answer = Button(box, IDYES) ? Journal::Of().Current(thread).answer : IDOK;
  Journal::Of().Write("mensagem",
                      {{"texto", Quoted(WindowText(GetDlgItem(box, kTextControl)))},
                       {"estilo", std::to_string(StyleOf(box))},
                       {"titulo", Quoted(WindowText(box))},
                       {"icones", Truth(IconsAreSeen())},
                       {"resposta", std::to_string(answer)}},
                      thread);
  auto* const button = Button(box, answer);
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

void Journal::Write(std::string_view tipo,
                    const std::vector<std::pair<std::string_view, std::string>>& members, DWORD thread) {
  const std::lock_guard lock(mutex_);
  const std::wstring& path = runs_[thread].path;
  if (path.empty()) return;
  std::string line = "{\"tipo\":" + Quoted(tipo);
  for (const auto& [name, value] : members)
    line += "," + Quoted(name) + ":" + value;
  line += "}\n";
  auto* const file = _wfopen(path.c_str(), L"ab");
  if (!file) return;
  std::fwrite(line.data(), 1, line.size(), file);
  std::fclose(file);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
      quoted += escape.data();
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string Truth(bool value) { return value ? "true" : "false"; }

BoxWatcher::BoxWatcher()
    : stop_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      thread_(CreateThread(nullptr, 0, &BoxWatcher::Watch, stop_, 0, nullptr)) {}

BoxWatcher::~BoxWatcher() {
  SetEvent(stop_);
  WaitForSingleObject(thread_, INFINITE);
  CloseHandle(thread_);
  CloseHandle(stop_);
}

unsigned long BoxWatcher::Watch(void* stop) {
  std::set<HWND> answered;
  while (WaitForSingleObject(stop, kPoll) == WAIT_TIMEOUT)
    AnswerAll(answered);
  return 0;
}

}  // namespace tremvik::com_test
