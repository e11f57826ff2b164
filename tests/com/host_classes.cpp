#include "host_classes.h"

#include <algorithm>
#include <array>
#include <memory>

#include "adapters/com/desktop.h"
#include "adapters/local/documents.h"
#include "componentes_idl.h"
#include "host/runtime_error.h"
#include "journal.h"
#include "sql_process.h"

namespace tremvik::com_test {
namespace {

using com::ComPtr;
using com::Variant;

std::wstring FolderOf(const std::wstring& file) { return file.substr(0, file.find_last_of(L'\\') + 1); }

std::wstring ComponentFolder() {
  std::array<wchar_t, 1024> path{};
  GetModuleFileNameW(GetModuleHandleW(L"DllTremvik.dll"), path.data(), path.size());
  return FolderOf(path.data());
}

// What the published description says of one of the interfaces.
ComPtr<ITypeInfo> Contract(REFGUID iid) {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> type;
  const HRESULT loaded = LoadTypeLibEx(com::LibraryPath().c_str(), REGKIND_NONE, library.Receive());
  if (FAILED(loaded) || FAILED(library->GetTypeInfoOfGuid(iid, type.Receive())))
    throw RuntimeError(erro::kComponenteNaoCriado, "componentes.tlb");
  return type;
}

Variant Boolean(bool value) {
  Variant variant;
  variant.raw().vt = VT_BOOL;
  variant.raw().boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return variant;
}

void WriteBanco(std::string_view operacao) { Journal::Of().Write("banco", {{"operacao", Quoted(operacao)}}); }

std::unique_ptr<BoxWatcher> watcher;

// Has the boxes of a program that knows nothing of the journal answered from here on, where the environment
// says with what.
void AnswerUnasked() {
  std::array<wchar_t, 8> answer{};
  if (GetEnvironmentVariableW(L"TESTE_HOST_RESPOSTA", answer.data(), answer.size()) == 0) return;
  Journal::Of().Start({{}, std::stoi(answer.data())});
  if (!watcher) watcher = std::make_unique<BoxWatcher>();
}

Scripted* MakeBanco() {
  AnswerUnasked();
  return new Scripted(
      {{L"Preparar",
        [](const Arguments&) {
          WriteBanco("Preparar");
          if (!Journal::Of().Current().prepares) return Variant();
          const std::wstring file = ComponentFolder() + L"BDTemp.mdb";
          CloseHandle(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
          return Variant();
        }},
       {L"Abrir",
        [](const Arguments& given) {
          WriteBanco("Abrir");
          Journal::Of().Write("caminho", {{"valor", Quoted(given.at(0))}});
          return Variant(std::int16_t{7});
        }},
       {L"Encerrar",
        [](const Arguments&) {
          WriteBanco("Encerrar");
          return Variant();
        }}},
      Contract(IID_IBancoTemporario));
}

Variant TakePath(const Arguments& given) {
  if (given.at(0).empty()) throw RuntimeError(erro::kArgumentoInvalido);
  return {};
}

Scripted* MakeConsulta() {
  const auto existe = [](const Arguments& given) {
    Journal::Of().Write("consulta", {{"ie", Quoted(given.at(0))},
                                     {"uf", Quoted(given.at(1))},
                                     {"regime", Quoted(given.at(2))},
                                     {"referencia", Quoted(given.at(3))},
                                     {"referenciaInicial", Quoted(given.at(4))},
                                     {"existe", Truth(false)}});
    return Boolean(false);
  };
  return new Scripted({{L"CaminhoBase", TakePath}, {L"Existe", existe}}, Contract(IID_IConsultaDeclaracoes));
}

Scripted* MakeValidador() {
  return new Scripted(
      {{L"ValidarIE",
        [](const Arguments& g) { return Boolean(ValidadorDocumentosLocal().ValidarIE(g.at(0))); }},
       {L"ValidarCNPJ",
        [](const Arguments& g) { return Boolean(ValidadorDocumentosLocal().ValidarCNPJ(g.at(0))); }}},
      Contract(IID_IValidadorDocumentos));
}

template <Kind kRegistro>
Scripted* MakeGravador() {
  auto campos = std::make_shared<std::string>();
  const auto campo = [campos](const Arguments& given) {
    *campos += (campos->empty() ? "" : ",") + Quoted(given.at(0)) + ":" + Quoted(given.at(1));
    return Variant();
  };
  const auto gravar = [campos](const Arguments&) {
    Journal::Of().Write("gravacao",
                        {{"registro", Quoted(Codigo(kRegistro))}, {"campos", "{" + *campos + "}"}});
    campos->clear();
    return Variant();
  };
  return new Scripted({{L"CaminhoBase", TakePath}, {L"Campo", campo}, {L"Gravar", gravar}},
                      Contract(IID_IGravador));
}

void WriteMotor(std::string_view operacao, std::string_view texto = {}) {
  Journal::Of().Write("motor", {{"operacao", Quoted(operacao)}, {"texto", Quoted(texto)}});
}

SqlProcess& Queries() {
  static SqlProcess process(FolderOf(com::LibraryPath()) + L"sql_server.exe");
  return process;
}

Variant Closed(const Arguments&) {
  WriteMotor("Close");
  return {};
}

Scripted* MakeRecordset(const std::string& path, const std::string& sql) {
  const auto row = std::make_shared<FirstRow>(Queries().Run(path, sql));
  const auto item = [row](const Arguments& name) {
    const auto found = row->texts.find(name.at(0));
    if (found == row->texts.end()) throw RuntimeError(3265, "Item não encontrado nesta coleção.");
    const std::string text = found->second;
    return AsValue(new Scripted({{L"Value", [text](const Arguments&) { return Variant(text); }}}));
  };
  return new Scripted(
      {{L"RecordCount", [row](const Arguments&) { return Variant(std::int32_t{row->found}); }},
       {L"Fields",
        [item](const Arguments&) {
          return AsValue(new Scripted({{L"Item", item}}));
        }},
       {L"Close", Closed}});
}

Variant OpenDatabase(const Arguments& given) {
  const std::string& path = given.at(0);
  WriteMotor("OpenDatabase", path);
  if (GetFileAttributesW(com::Wide(path).c_str()) == INVALID_FILE_ATTRIBUTES)
    throw RuntimeError(erro::kBancoNaoEncontrado, "Não foi possível localizar o arquivo '" + path + "'.");
  const auto open = [path](const Arguments& query) {
    WriteMotor("OpenRecordset", query.at(1) + " " + query.at(0));
    return AsValue(MakeRecordset(path, query.at(0)));
  };
  return AsValue(new Scripted({{L"OpenRecordset", open}, {L"Close", Closed}}));
}

Scripted* MakeEngine() { return new Scripted({{L"OpenDatabase", OpenDatabase}}); }

Scripted* MakeDiario() {
  return new Scripted(
      {{L"Iniciar",  // journal file, answer to boxes that ask, whether Preparar works
        [](const Arguments& given) {
          if (!watcher) watcher = std::make_unique<BoxWatcher>();
          Journal::Of().Start({com::Wide(given.at(0)), std::stoi(given.at(1)), given.at(2) != "0"});
          return Variant();
        }},
       {L"Evento",
        [](const Arguments& given) {
          Journal::Of().Write("evento", {{"nome", Quoted(given.at(0))}});
          return Variant();
        }},
       {L"Fim",  // bolRetMonitora, NroLinha, Mensagem
        [](const Arguments& given) {
          Journal::Of().Write("fim", {{"bolRetMonitora", Truth(given.at(0) == "-1")},
                                      {"NroLinha", given.at(1)},
                                      {"Mensagem", Quoted(given.at(2))}});
          return Variant();
        }},
       {L"Encerrar", [](const Arguments&) {
          watcher.reset();
          return Variant();
        }}});
}

constexpr std::array kClasses{
    HostClass{L"TesteHost.Diario", 1, MakeDiario},
    HostClass{L"DAO.DBEngine.36", 2, MakeEngine},
    HostClass{L"DAO.DBEngine.120", 3, MakeEngine},
    HostClass{L"Brunsel.BancoTemporario", 4, MakeBanco},
    HostClass{L"Brunsel.ConsultaDeclaracoes", 5, MakeConsulta},
    HostClass{L"Brunsel.ValidadorDocumentos", 6, MakeValidador},
    HostClass{L"Brunsel.GravadorCR05", 7, MakeGravador<Kind::kCr05>},
    HostClass{L"Brunsel.GravadorCR07", 8, MakeGravador<Kind::kCr07>},
    HostClass{L"Brunsel.GravadorCR10", 9, MakeGravador<Kind::kCr10>},
    HostClass{L"Brunsel.GravadorCR14", 10, MakeGravador<Kind::kCr14>},
    HostClass{L"Brunsel.GravadorCR18", 11, MakeGravador<Kind::kCr18>},
    HostClass{L"Brunsel.GravadorCR20", 12, MakeGravador<Kind::kCr20>},
    HostClass{L"Brunsel.GravadorCR25", 13, MakeGravador<Kind::kCr25>},
    HostClass{L"Brunsel.GravadorCR26", 14, MakeGravador<Kind::kCr26>},
    HostClass{L"Brunsel.GravadorCR27", 15, MakeGravador<Kind::kCr27>},
    HostClass{L"Brunsel.GravadorCR28", 16, MakeGravador<Kind::kCr28>},
    HostClass{L"Brunsel.GravadorCR30", 17, MakeGravador<Kind::kCr30>},
    HostClass{L"Brunsel.GravadorCR31", 18, MakeGravador<Kind::kCr31>},
};

}  // namespace

std::span<const HostClass> HostClasses() { return kClasses; }

}  // namespace tremvik::com_test
