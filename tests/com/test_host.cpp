// A pretended host program, the database engine and the journal, in one library. Every object answers by the
// names of members alone; calls and message boxes go to the journal, a JSON object a line.
#include <array>
#include <atomic>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "adapters/com/late_bound.h"
#include "adapters/local/documents.h"
#include "adapters/sqlite/connection.h"

namespace tremvik::com_test {
namespace {

using com::Variant;
/// The arguments of a call in the caller's order, as texts (numbers in decimal).
using Arguments = std::vector<std::string>;

// One run: a thread has one at a time.
struct Run {
  std::wstring path;  // where its lines go; empty: nowhere
  int answer = 0;     // to boxes that ask, IDYES or IDNO
  std::string
      fault;  // of one member: to do nothing ("Abrir idle"), to answer Nothing, to raise without words
};

std::wstring FolderOf(const wchar_t* module) {
  std::array<wchar_t, 1024> path{};
  GetModuleFileNameW(GetModuleHandleW(module), path.data(), path.size());
  const std::wstring_view file = path.data();
  return std::wstring(file.substr(0, file.find_last_of(L'\\') + 1));
}

// The runs of this process, safe to use from several threads.
class Journal {
 public:
  static Journal& Of() {
    static Journal journal;
    return journal;
  }
  void Start(const Run& run) {
    const std::lock_guard lock(mutex_);
    runs_[GetCurrentThreadId()] = run;
  }
  Run Current(DWORD thread = GetCurrentThreadId()) {
    const std::lock_guard lock(mutex_);
    return runs_[thread];
  }
  // Writes the members of one object, whose values are already JSON, to a thread's run.
  void Write(std::initializer_list<std::pair<std::string_view, std::string>> members,
             DWORD thread = GetCurrentThreadId()) {
    const std::lock_guard lock(mutex_);
    std::string line;
    for (const auto& [name, value] : members)
      line.append(line.empty() ? "{\"" : ",\"").append(name).append("\":").append(value);
    if (auto* const file = _wfopen(runs_[thread].path.c_str(), L"ab")) {
      std::fprintf(file, "%s}\n", line.c_str());
      std::fclose(file);
    }
  }

 private:
  std::mutex mutex_;
  std::map<DWORD, Run> runs_;
};

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

// Begins or ends the answering of every message box of this process.
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

// Begin(journal file, answer to boxes that ask, fault) and Stop; Event(name) and End(bolRetMonitora,
// NroLinha, Mensagem) are only written down.
void TellJournal(const std::string& member, const Arguments& given) {
  if (member == "Begin") Journal::Of().Start({com::Wide(given.at(0)), std::stoi(given.at(1)), given.at(2)});
  AnswerBoxes(member != "Stop");
}

// The desktop engine's databases are one: the files begin as its own do, and the rows lie in a database of
// another kind beside this library.
constexpr std::string_view kDesktopMark{"\0\1\0\0Standard Jet DB\0", 20};
std::mutex rows_mutex;
sqlite::Connection& Rows() {
  static sqlite::Connection rows = [] {
    sqlite::Connection opened(com::Utf8(FolderOf(L"TestHost.dll")) + "rows.sqlite",
                              SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    opened.Execute("PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = OFF");  // one process at a time
    return opened;
  }();
  return rows;
}

void Execute(const std::string& sql) {
  const std::lock_guard lock(rows_mutex);
  Rows().Execute(sql);
}

// The first row that a query finds, each field as NAME<tab>VALUE<line feed>.
std::string FirstRow(const std::string& sql) {
  const std::lock_guard lock(rows_mutex);
  sqlite::Statement query = Rows().Prepare(sql);
  std::string row;
  const bool found = query.Step();
  for (int column = 0; found && column < query.Columns(); ++column)
    row.append(query.Name(column)).append("\t").append(query.Text(column)).append("\n");
  return row;
}

std::string FieldOf(const std::string& row, const std::string& name) {
  const auto begin = ("\n" + row).find("\n" + name + "\t");
  if (begin == std::string::npos) throw RuntimeError(3265, "Item não encontrado nesta coleção.");
  const auto value = begin + name.size() + 1;
  return row.substr(value, row.find('\n', value) - value);
}

std::string TextOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Variant Boolean(bool value) {
  Variant boolean;
  boolean.raw().vt = VT_BOOL;
  boolean.raw().boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return boolean;
}

Variant Object(std::string_view name, const std::string& state);

// What an object answers to a call. `state` is the row of a recordset and its fields, the value of a field.
Variant Answer(std::string_view of, const std::string& state, const std::string& member,
               const Arguments& given) {
  if (member == "Preparar") {
    const std::wstring file = FolderOf(L"DllTremvik.dll") + L"BDTemp.mdb";
    CloseHandle(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  }
  if (member == "Abrir") return Variant(std::int16_t{7});
  if (member == "Existe") return Boolean(false);
  if (member == "ValidarIE") return Boolean(ValidadorDocumentosLocal().ValidarIE(given.at(0)));
  if (member == "ValidarCNPJ") return Boolean(ValidadorDocumentosLocal().ValidarCNPJ(given.at(0)));
  if (member == "OpenDatabase") {
    if (GetFileAttributesW(com::Wide(given.at(0)).c_str()) != INVALID_FILE_ATTRIBUTES)
      return Object("Database", {});
    throw RuntimeError(erro::kBancoNaoEncontrado, "Não foi possível localizar o arquivo '" + given[0] + "'.");
  }
  if (member == "CreateDatabase") {
    std::ofstream(given.at(0), std::ios::binary) << kDesktopMark;
    return Object("Database", {});
  }
  if (member == "Execute") Execute(given.at(0));
  if (member == "OpenRecordset") return Object("Recordset", FirstRow(given.at(0)));
  if (member == "RecordCount") return Variant(std::int32_t{!state.empty()});
  if (member == "Fields") return Object("Fields", state);
  if (member == "Item") return Object("Field", FieldOf(state, given.at(0)));
  if (member == "Value") return Variant(state);
  static thread_local std::string loaded;
  if (member == "LoadFromFile") loaded = TextOf(given.at(0));
  if (member == "ReadText") return Variant(loaded);
  if (of == "TestHost.Journal") TellJournal(member, given);
  return {};
}

std::atomic<long> alive{0};

class HostObject final : public IDispatch {
 public:
  HostObject(std::string_view name, std::string state) : name_(name), state_(std::move(state)) { ++alive; }
  HostObject(const HostObject&) = delete;
  HostObject& operator=(const HostObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    members_.push_back(com::Utf8(names[0]));
    ids[0] = static_cast<DISPID>(members_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    try {
      Variant value = Called(members_.at(static_cast<std::size_t>(id) - 1), flags, *parameters);
      if (result) *result = value.Detach();
      return S_OK;
    } catch (const RuntimeError& error) {
      return Raise(error, *exception);
    }
  }

 private:
  ~HostObject() { --alive; }

  Variant Called(const std::string& member, WORD flags, const DISPPARAMS& parameters) {
    Arguments given;
    std::string list;
    for (UINT i = parameters.cArgs; i > 0; --i) {
      Variant value;
      VariantCopyInd(&value.raw(), &parameters.rgvarg[i - 1]);
      given.push_back(com::As<std::string>(value));
      list += (list.empty() ? "" : ",") + Quoted(given.back());
    }
    if (member != "Begin" && member != "Stop") {  // these stand between two runs
      Journal::Of().Write({{"tipo", "\"chamada\""},
                           {"objeto", Quoted(name_)},
                           {"membro", Quoted(member)},
                           {"atribui", flags == DISPATCH_PROPERTYPUT ? "true" : "false"},
                           {"argumentos", "[" + list + "]"}});
    }
    const std::string fault = Journal::Of().Current().fault;
    if (fault == member + " idle") return {};
    if (fault == member + " wordless") throw RuntimeError(0, "");
    if (fault != member + " Nothing") return Answer(name_, state_, member, given);
    Variant nothing;
    nothing.raw().vt = VT_DISPATCH;
    return nothing;
  }

  // Both ways of giving a number are in use: hosts' classes fill the code, the engine fills the status.
  static HRESULT Raise(const RuntimeError& error, EXCEPINFO& exception) {
    const bool engine = error.number() >= 3000;
    exception = {};
    if (engine) exception.scode = std::bit_cast<SCODE>(0x800A0000U + static_cast<unsigned>(error.number()));
    if (!engine) exception.wCode = static_cast<WORD>(error.number());
    if (!error.description().empty()) exception.bstrDescription = com::Bstr(error.description()).Detach();
    return DISP_E_EXCEPTION;
  }

  std::string name_;
  std::string state_;
  std::vector<std::string> members_;
  std::atomic<ULONG> references_{1};
};

Variant Object(std::string_view name, const std::string& state) {
  Variant object;
  object.raw().vt = VT_DISPATCH;
  object.raw().pdispVal = new HostObject(name, state);
  return object;
}

// Makes objects of one class. Where the environment says with what, boxes of a program that knows nothing of
// the journal are answered from the first object on.
class Factory final : public IClassFactory {
 public:
  explicit Factory(std::wstring_view name) : name_(com::Utf8(name)) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives as long as the library
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    const char* const answer = std::getenv("TEST_HOST_ANSWER");
    if (answer) TellJournal("Begin", {"", answer, ""});
    auto* const made = new HostObject(name_, {});
    const HRESULT status = made->QueryInterface(iid, object);
    made->Release();
    return status;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  std::string name_;
};

}  // namespace
}  // namespace tremvik::com_test

// Whatever is registered with this library is a class of it.
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
  static std::map<std::wstring, tremvik::com_test::Factory> factories;
  LPOLESTR name = nullptr;
  if (FAILED(ProgIDFromCLSID(clsid, &name))) return CLASS_E_CLASSNOTAVAILABLE;
  auto& factory = factories.try_emplace(name, name).first->second;
  CoTaskMemFree(name);
  return factory.QueryInterface(iid, object);
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

/// Number of the library's objects that are alive.
STDAPI_(long) AliveObjects() { return tremvik::com_test::alive; }
