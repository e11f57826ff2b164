// A pretended host program, the database engine and the journal, in one library. Every object answers by the
// names of members alone and writes each call to the journal.
#include <array>
#include <atomic>
#include <fstream>
#include <functional>

#include "adapters/com/desktop.h"
#include "adapters/com/errors.h"
#include "adapters/com/late_bound.h"
#include "adapters/com/registry.h"
#include "adapters/local/documents.h"
#include "componentes_idl.h"
#include "journal.h"

namespace tremvik::com_test {
namespace {

using com::ComPtr;
using com::Variant;

/// The arguments of a call in the caller's order, as texts (numbers in decimal).
using Arguments = std::vector<std::string>;
/// What an object answers to a call; what it throws reaches the caller as its error.
using Answers = std::function<Variant(const std::string& member, const Arguments& given)>;

std::atomic<long> alive{0};

class HostObject final : public IDispatch {
 public:
  HostObject(std::string name, Answers answers, ComPtr<ITypeInfo> contract = {})
      : name_(std::move(name)), answers_(std::move(answers)), contract_(std::move(contract)) {
    ++alive;
  }
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
    members_.emplace_back(names[0]);
    ids[0] = static_cast<DISPID>(members_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    try {
      Variant value = Answer(members_.at(static_cast<std::size_t>(id) - 1), flags, *parameters);
      if (result) *result = value.Detach();
      return S_OK;
    } catch (const RuntimeError& error) {
      return Raise(error, *exception);
    }
  }

 private:
  ~HostObject() { --alive; }

  Variant Answer(const std::wstring& name, WORD flags, const DISPPARAMS& parameters) {
    const std::string member = com::Utf8(name);
    Arguments given;
    std::string list;
    for (UINT i = parameters.cArgs; i > 0; --i) {
      Variant value;
      VariantCopyInd(&value.raw(), &parameters.rgvarg[i - 1]);
      given.push_back(com::As<std::string>(value));
      list += (list.empty() ? "" : ",") + Quoted(given.back());
    }
    if (member != "Begin" && member != "Stop") {  // the journal's own, between two runs
      Journal::Of().Write({{"tipo", "\"chamada\""},
                           {"objeto", Quoted(name_)},
                           {"membro", Quoted(member)},
                           {"argumentos", "[" + list + "]"}});
    }
    if (contract_ && !Agreed(name, flags, parameters.cArgs))
      throw RuntimeError(450, "Fora do contrato: " + member);
    return Faulty(member, given);
  }

  // A run may ask for a fault of one member: to do nothing, to answer Nothing, to raise an error without
  // words.
  Variant Faulty(const std::string& member, const Arguments& given) {
    const std::string fault = Journal::Of().Current().fault;
    Variant nothing;
    if (fault == member + " idle") return nothing;
    if (fault == member + " wordless") throw RuntimeError(0, "");
    if (fault != member + " Nothing") return answers_(member, given);
    nothing.raw().vt = VT_DISPATCH;
    return nothing;
  }

  // Whether the published description has that member, for this kind of call and number of arguments.
  [[nodiscard]] bool Agreed(std::wstring name, WORD flags, UINT arguments) const {
    LPOLESTR names = name.data();
    MEMBERID id = MEMBERID_NIL;
    if (FAILED(contract_->GetIDsOfNames(&names, 1, &id))) return false;
    FUNCDESC* function = nullptr;
    bool agreed = false;
    for (UINT i = 0; !agreed && SUCCEEDED(contract_->GetFuncDesc(i, &function)); ++i) {
      auto count = static_cast<UINT>(function->cParams);
      const auto* const all = function->lprgelemdescParam;
      if (count > 0 && (all[count - 1].paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) --count;
      agreed = function->memid == id && (function->invkind & flags) != 0 && count == arguments;
      contract_->ReleaseFuncDesc(function);
    }
    return agreed;
  }

  // Both ways of giving a number are in use: hosts' classes fill the code, the engine fills the status.
  static HRESULT Raise(const RuntimeError& error, EXCEPINFO& exception) {
    exception = {};
    if (error.number() < 3000) {
      exception.wCode = static_cast<WORD>(error.number());
    } else {
      exception.scode = static_cast<SCODE>(0x800A0000U + static_cast<unsigned>(error.number()));
    }
    if (!error.description().empty()) exception.bstrDescription = com::Bstr(error.description()).Detach();
    return DISP_E_EXCEPTION;
  }

  std::string name_;
  Answers answers_;
  ComPtr<ITypeInfo> contract_;
  std::vector<std::wstring> members_;
  std::atomic<ULONG> references_{1};
};

Variant Object(std::string_view name, Answers answers) {
  Variant object;
  object.raw().vt = VT_DISPATCH;
  object.raw().pdispVal = new HostObject(std::string(name), std::move(answers));
  return object;
}

Variant Boolean(bool value) {
  Variant boolean;
  boolean.raw().vt = VT_BOOL;
  boolean.raw().boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return boolean;
}

std::wstring FolderOf(HMODULE module) {
  std::array<wchar_t, 1024> path{};
  GetModuleFileNameW(module, path.data(), path.size());
  const std::wstring_view file = path.data();
  return std::wstring(file.substr(0, file.find_last_of(L'\\') + 1));
}

Variant Banco(const std::string& member, const Arguments&) {
  if (member == "Abrir") return Variant(std::int16_t{7});
  if (member != "Preparar") return {};
  const std::wstring file = FolderOf(GetModuleHandleW(L"DllTremvik.dll")) + L"BDTemp.mdb";
  CloseHandle(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  return {};
}

Variant Consulta(const std::string&, const Arguments&) { return Boolean(false); }
Variant Gravador(const std::string&, const Arguments&) { return {}; }

Variant Validador(const std::string& member, const Arguments& given) {
  ValidadorDocumentosLocal local;
  return Boolean(member == "ValidarIE" ? local.ValidarIE(given.at(0)) : local.ValidarCNPJ(given.at(0)));
}

// The first value of each query that finds something, from the file that run.py wrote: "QUERY<tab>VALUE".
const std::map<std::string, std::string>& Found() {
  static const auto found = [] {
    std::map<std::string, std::string> read;
    std::ifstream file(com::Utf8(FolderOf(GetModuleHandleW(L"TestHost.dll"))) + "answers.tsv",
                       std::ios::binary);
    for (std::string line; std::getline(file, line);)
      read.emplace(line.substr(0, line.find('\t')), line.substr(line.find('\t') + 1));
    return read;
  }();
  return found;
}

Variant OpenRecordset(const std::string& query) {
  const auto row = Found().find(query);
  const std::int32_t count = row == Found().end() ? 0 : 1;
  const std::string value = count == 0 ? "" : row->second;
  return Object("Recordset", [=](const std::string& member, const Arguments&) {
    if (member == "RecordCount") return Variant(count);
    if (member != "Fields") return Variant();
    return Object("Fields", [=](const std::string&, const Arguments& name) {
      if (query.find(name.at(0)) == std::string::npos) throw RuntimeError(3265, "Item não encontrado.");
      return Object("Field", [=](const std::string&, const Arguments&) { return Variant(value); });
    });
  });
}

Variant Engine(const std::string&, const Arguments& given) {
  const std::string& path = given.at(0);
  if (GetFileAttributesW(com::Wide(path).c_str()) == INVALID_FILE_ATTRIBUTES)
    throw RuntimeError(erro::kBancoNaoEncontrado, "Não foi possível localizar o arquivo '" + path + "'.");
  return Object("Database", [](const std::string& member, const Arguments& query) {
    return member == "OpenRecordset" ? OpenRecordset(query.at(0)) : Variant();
  });
}

// Begin(journal file, answer to boxes that ask, fault) and Stop; the others are only written down:
// Event(name) and End(bolRetMonitora, NroLinha, Mensagem).
Variant TellJournal(const std::string& member, const Arguments& given) {
  if (member == "Begin") Journal::Of().Start({com::Wide(given.at(0)), std::stoi(given.at(1)), given.at(2)});
  if (member == "Begin" || member == "Stop") AnswerBoxes(member == "Begin");
  return {};
}

// What a program that knows nothing of the journal has its boxes answered with, where the environment says
// so.
void AnswerUnasked() {
  std::array<wchar_t, 8> answer{};
  if (GetEnvironmentVariableW(L"TEST_HOST_ANSWER", answer.data(), answer.size()) == 0) return;
  Journal::Of().Start({{}, std::stoi(answer.data()), {}});
  AnswerBoxes(true);
}

// A class of the library, its factory and the object that the system asks for it.
class HostClass final : public IClassFactory {
 public:
  HostClass(std::wstring prog_id, Answers answers, const IID* contract = nullptr)
      : prog_id_(std::move(prog_id)), answers_(std::move(answers)), contract_(contract) {}

  [[nodiscard]] const std::wstring& prog_id() const { return prog_id_; }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives as long as the library
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    AnswerUnasked();
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> type;
    HRESULT status = LoadTypeLibEx(com::LibraryPath().c_str(), REGKIND_NONE, library.Receive());
    if (SUCCEEDED(status) && contract_) status = library->GetTypeInfoOfGuid(*contract_, type.Receive());
    if (FAILED(status)) return status;
    auto* const made = new HostObject(com::Utf8(prog_id_), answers_, type);
    status = made->QueryInterface(iid, object);
    made->Release();
    return status;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  std::wstring prog_id_;
  Answers answers_;
  const IID* contract_;
};

std::vector<HostClass>& Classes() {
  static std::vector<HostClass> classes = [] {
    std::vector<HostClass> all{{L"TestHost.Journal", TellJournal},
                               {L"DAO.DBEngine.36", Engine},
                               {L"DAO.DBEngine.120", Engine},
                               {L"Brunsel.BancoTemporario", Banco, &IID_IBancoTemporario},
                               {L"Brunsel.ConsultaDeclaracoes", Consulta, &IID_IConsultaDeclaracoes},
                               {L"Brunsel.ValidadorDocumentos", Validador, &IID_IValidadorDocumentos}};
    for (const auto* code :
         {L"05", L"07", L"10", L"14", L"18", L"20", L"25", L"26", L"27", L"28", L"30", L"31"})
      all.emplace_back(std::wstring(L"Brunsel.GravadorCR") + code, Gravador, &IID_IGravador);
    return all;
  }();
  return classes;
}

CLSID IdentifierOf(std::size_t index) {
  const auto last = static_cast<unsigned char>(index);
  return {0x3f6b1c52, 0x7a0d, 0x4e8e, {0x9b, 0x41, 0x52, 0x1d, 0x60, 0xaa, 0x70, last}};
}

}  // namespace
}  // namespace tremvik::com_test

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
  auto& classes = tremvik::com_test::Classes();
  for (std::size_t i = 0; i < classes.size(); ++i)
    if (IsEqualCLSID(clsid, tremvik::com_test::IdentifierOf(i)))
      return classes[i].QueryInterface(iid, object);
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

/// Number of the library's objects that are alive.
STDAPI_(long) AliveObjects() { return tremvik::com_test::alive; }

STDAPI DllRegisterServer() {
  const auto write = [](const std::wstring& path, const std::wstring& name, const std::wstring& text) {
    return tremvik::com::WriteText(HKEY_LOCAL_MACHINE, L"Software\\Classes\\" + path, name, text) ==
           ERROR_SUCCESS;
  };
  const auto& classes = tremvik::com_test::Classes();
  bool good = true;
  for (std::size_t i = 0; i < classes.size(); ++i) {
    std::array<wchar_t, 39> clsid{};
    StringFromGUID2(tremvik::com_test::IdentifierOf(i), clsid.data(), static_cast<int>(clsid.size()));
    const std::wstring server = std::wstring(L"CLSID\\") + clsid.data() + L"\\InprocServer32";
    good = good && write(classes[i].prog_id() + L"\\CLSID", L"", clsid.data()) &&
           write(server, L"", tremvik::com::LibraryPath()) && write(server, L"ThreadingModel", L"Both");
  }
  return good ? S_OK : E_FAIL;
}
