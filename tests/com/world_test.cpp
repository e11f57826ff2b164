// What the library reaches: registry, files, engine, the host's components, windows.
#include <span>
#include <thread>

#include "adapters/com/brunsel_components.h"
#include "adapters/com/registry.h"
#include "adapters/com/win_files.h"
#include "com_support.h"
#include "host/runtime_error.h"

namespace tremvik::com_test {
namespace {

/// A registry text that stands for the length of a test, with or without the NUL at its end.
class Setting {
 public:
  Setting(HKEY root, std::wstring path, std::wstring name, std::wstring_view text, bool ended = true)
      : root_(root),
        path_(std::move(path)),
        name_(std::move(name)),
        before_(com::ReadText(root, path_, name_)) {
    const std::wstring value(text);
    const auto bytes = static_cast<DWORD>((value.size() + (ended ? 1 : 0)) * sizeof(wchar_t));
    EXPECT_EQ(com::WriteText(root_, path_, name_, value), ERROR_SUCCESS);  // makes the key too
    EXPECT_EQ(RegSetKeyValueW(root_, path_.c_str(), name_.c_str(), REG_SZ, value.c_str(), bytes),
              ERROR_SUCCESS);
  }
  Setting(const Setting&) = delete;
  Setting& operator=(const Setting&) = delete;
  ~Setting() {
    RegDeleteKeyValueW(root_, path_.c_str(), name_.c_str());
    if (before_) static_cast<void>(com::WriteText(root_, path_, name_, *before_));
  }

 private:
  HKEY root_;
  std::wstring path_;
  std::wstring name_;
  std::optional<std::wstring> before_;
};

// What an operation raises; empty: nothing.
template <class Operation>
std::string ErrorOf(Operation&& operation) {
  try {
    operation();
    return {};
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + " - " + error.description();
  }
}

class World : public ComTest {
 protected:
  static std::string MessageOf(std::string_view sample) {
    const auto tremvik = Make();
    EXPECT_EQ(Monitora(tremvik, Sample(sample)), S_OK);
    return Mensagem(tremvik);
  }
};

TEST_F(World, ClassesAreLookedForInOrder) {
  const std::wstring redirections = LR"(Software\DllTremvik\Componentes)";
  const std::wstring name = L"Brunsel.BancoTemporario";
  const std::wstring no_class = L"{00000000-1111-2222-3333-444444444444}";
  {
    const Setting machine(HKEY_LOCAL_MACHINE, redirections, name, L"Maquina.Banco");
    EXPECT_EQ(MessageOf("aceito"), "429 - O componente ActiveX não pode criar o objeto: 'Maquina.Banco'");
    const Setting user(HKEY_CURRENT_USER, redirections, name, L"Usuario.Banco");
    EXPECT_EQ(MessageOf("aceito"), "429 - O componente ActiveX não pode criar o objeto: 'Usuario.Banco'");
    const Setting back(HKEY_CURRENT_USER, redirections, name, name);
    EXPECT_EQ(MessageOf("aceito"), "");
  }
  const Setting first(HKEY_LOCAL_MACHINE, LR"(Software\Classes\DAO.DBEngine.36\CLSID)", L"", no_class);
  EXPECT_EQ(MessageOf("aceito"), "") << "the later engine stands in for the first";
  const Setting later(HKEY_LOCAL_MACHINE, LR"(Software\Classes\DAO.DBEngine.120\CLSID)", L"", no_class);
  EXPECT_EQ(MessageOf("aceito"), "429 - O componente ActiveX não pode criar o objeto: 'DAO.DBEngine.120'");
}

TEST_F(World, ErrorsOfOthersKeepTheirWordsOrNameWhoFailed) {
  const std::wstring tables = com::Wide(Folder() + "\\tblFixas.fix");
  ASSERT_TRUE(MoveFileW(tables.c_str(), (tables + L".fora").c_str()));
  EXPECT_EQ(MessageOf("aceito"),
            "3024 - Não foi possível localizar o arquivo '" + Folder() + "\\tblFixas.fix'.");
  ASSERT_TRUE(MoveFileW((tables + L".fora").c_str(), tables.c_str()));
  for (const auto& [fault, message] : std::vector<std::pair<std::string, std::string>>{
           {"Preparar idle", "53 - Arquivo não encontrado: '" + Folder() + "\\BDTemp.mdb'"},
           {"Existe Nothing", "13 - Tipos incompatíveis em Brunsel.ConsultaDeclaracoes.Existe"},
           {"Abrir Nothing", "13 - Tipos incompatíveis em Brunsel.BancoTemporario.Abrir"},
           {"OpenRecordset Nothing",
            "13 - Tipos incompatíveis em DAO.DBEngine.36.OpenDatabase.OpenRecordset"},
           {"Gravar wordless", "440 - Erro de automação em Brunsel.GravadorCR05.Gravar"}}) {
    apartment_.Begin({}, "6", fault);
    EXPECT_EQ(MessageOf("aceito"), message);
  }
  com::BrunselComponents unwritable("Z:\\sys");
  apartment_.Begin({}, "6", "Preparar wordless");
  EXPECT_EQ(
      ErrorOf([&] { unwritable.CriarBancoTemporario()->Preparar(); }),
      "440 - Erro de automação em Brunsel.BancoTemporario.Preparar; a pasta 'Z:\\sys' não permite gravar");
}

TEST_F(World, WhatTheLastRunLeftAndCannotGoIsNamed) {
  const std::string left = "'" + Folder() + "\\BDTempPrf.fix'";
  const std::wstring file = com::Wide(Folder() + "\\BDTempPrf.fix");
  EXPECT_EQ(MessageOf("aceito"), "");
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(MessageOf("aceito"), "75 - Erro de acesso ao caminho/arquivo: " + left + " é somente leitura");
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
  auto* const other = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(MessageOf("aceito"), "70 - Permissão negada: " + left + " está em uso por outro programa");
  CloseHandle(other);
  EXPECT_EQ(MessageOf("aceito"), "");
}

TEST_F(World, TheCurrentDatabaseIsTheUsersSetting) {
  const std::wstring folder = LR"(Software\VB and VBA Program Settings\Brunsel\DB)";
  const std::wstring wide(64, L'x');
  for (const bool ended : {true, false}) {
    for (const std::wstring& text :
         {std::wstring(L"C:\\Declarações\\Base.mdb"), std::wstring(L"C:\\"), wide, {}}) {
      const Setting setting(HKEY_CURRENT_USER, folder, L"DbAtual", text, ended);
      const auto tremvik = Make();
      EXPECT_EQ(Monitora(tremvik, Sample("recusado-versao")), S_OK);
      Bstr name;
      ASSERT_EQ(tremvik->get_database_name(name.Receive()), S_OK);
      EXPECT_EQ(com::View(name.get()), text) << ended;
      EXPECT_NE(Mensagem(tremvik).find("Versão"), std::string::npos) << Mensagem(tremvik);
    }
  }
}

TEST_F(World, BoxesAreModalToTheActiveWindow) {
  auto* const host = CreateWindowW(L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 90, 90,
                                   nullptr, nullptr, nullptr, nullptr);
  SetActiveWindow(host);
  apartment_.journal().Call(L"Stop");  // the box is answered here
  HWND owner = nullptr;
  BOOL enabled = TRUE;
  std::thread watcher([&] {
    HWND box = nullptr;
    while (!(box = FindWindowW(L"#32770", L"Mensagem...")) || !IsWindowVisible(box))
      Sleep(2);
    owner = GetWindow(box, GW_OWNER);
    enabled = IsWindowEnabled(host);
    PostMessageW(box, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
  });
  Monitora(Make(), Sample("recusado-vazio"));
  watcher.join();
  EXPECT_EQ(owner, host);
  EXPECT_FALSE(enabled);
  DestroyWindow(host);
}

void WriteFileAt(const std::wstring& path, std::string_view bytes) {
  auto* const file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
}

bool Writable(const std::wstring& path) {
  auto* const file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                 OPEN_EXISTING, 0, nullptr);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  return file != INVALID_HANDLE_VALUE;
}

// From the first pass to the last; whoever is told the outcome has the file to himself again.
TEST_F(World, TheFileStaysAsItIsBetweenThePasses) {
  const std::wstring file = com::Wide(Folder() + "\\em uso.txt");
  ASSERT_TRUE(CopyFileW(com::Wide(Sample("recusado-versao")).c_str(), file.c_str(), FALSE));
  const auto tremvik = Make();
  std::vector<bool> writable;
  Sink sink([&](DISPID) { writable.push_back(Writable(file)); });
  sink.Hear(tremvik);
  EXPECT_EQ(Monitora(tremvik, com::Utf8(file)), S_OK);
  EXPECT_EQ(writable, (std::vector<bool>{false, false, false})) << "two between the passes, the last in one";
  EXPECT_TRUE(Writable(file)) << "over";
}

TEST(WinFiles, LongAndAccentedNamesWork) {
  std::string folder = Folder() + "\\cópia";
  CreateDirectoryW(com::Wide(folder).c_str(), nullptr);
  for (int i = 0; i < 3; ++i) {
    folder += "\\" + std::string(100, 'x');
    CreateDirectoryW((LR"(\\?\)" + com::Wide(folder)).c_str(), nullptr);
  }
  const std::string first = folder + "\\declaração.txt";
  const std::string second = folder + "\\€.txt";
  WriteFileAt(LR"(\\?\)" + com::Wide(first), "abc");
  com::WinFiles files;
  EXPECT_TRUE(files.Exists(first));
  EXPECT_FALSE(files.Exists(folder)) << "a folder is no file";
  for (int pass = 0; pass < 2; ++pass) {
    files.Open(1, first);
    EXPECT_EQ(files.FreeFile(), 2);
    std::string bytes(8, '?');
    EXPECT_EQ(files.Read(1, bytes.data(), bytes.size()), 3U) << "from its begin, in each pass";
    EXPECT_EQ(files.Read(1, bytes.data(), bytes.size()), 0U);
    files.Close(1);
  }
  EXPECT_EQ(ErrorOf([&] { files.Rename(first, second); }),
            "70 - Permissão negada: '" + first + "' está em uso por outro programa")
      << "kept for another pass";
  files.LetGo();
  files.Rename(first, second);
  EXPECT_TRUE(files.Exists(second));
  files.Delete(second);
  EXPECT_FALSE(files.Exists(second));
}

TEST(WinFiles, FailuresAreTheRuntimesErrors) {
  const std::string file = Folder() + "\\um.txt";
  const std::string other = Folder() + "\\outro.txt";
  WriteFileAt(com::Wide(file), "1");
  WriteFileAt(com::Wide(other), "2");
  com::WinFiles files;
  char byte = 0;
  files.Open(1, file);
  auto* const writer =
      CreateFileW(com::Wide(other).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  for (const auto& [operation, error] : std::vector<std::pair<std::function<void()>, std::string>>{
           {[&] { files.Open(2, Folder() + "\\nada.txt"); }, "53 - Arquivo não encontrado"},
           {[&] { files.Open(2, Folder() + "\\nada\\nada.txt"); }, "76 - Caminho não encontrado"},
           {[&] { files.Open(2, Folder()); }, "75 - Erro de acesso ao caminho/arquivo"},
           {[&] { files.Open(2, other); }, "70 - Permissão negada"},  // still being written
           {[&] { files.Open(1, other); }, "55 - Arquivo já aberto"},
           {[&] { files.Read(9, &byte, 1); }, "52 - Nome ou número de arquivo inválido"},
           {[&] { files.Close(5); }, ""},
           {[&] { files.Rename(Sample("aceito"), other); }, "58 - Arquivo já existe: '" + other + "'"},
           {[&] { files.Delete(Folder() + "\\nada"); },
            "53 - Arquivo não encontrado: '" + Folder() + "\\nada'"},
           {[&] { files.Rename("Z:\\sys\\BDTemp.mdb", "Z:\\sys\\BDTempPrf.fix"); },
            "53 - Arquivo não encontrado: 'Z:\\sys\\BDTemp.mdb'; a pasta 'Z:\\sys' não permite gravar"}}) {
    EXPECT_EQ(ErrorOf(operation), error);
  }
  CloseHandle(writer);
}

}  // namespace
}  // namespace tremvik::com_test
