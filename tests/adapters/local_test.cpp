#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "adapters/local/documents.h"
#include "adapters/local/local_application.h"
#include "adapters/local/local_files.h"
#include "adapters/local/temporary_names.h"
#include "tests/adapters/support.h"

namespace tremvik {
namespace {

using test::ErrorOf;
using test::ScratchFolder;
using test::WriteFile;

class LocalFilesTest : public testing::Test {
 protected:
  std::string Path(std::string_view name) { return std::string(scratch_.path()).append("/").append(name); }

  ScratchFolder scratch_;
  ComponentFolder folder_{scratch_.path()};
  LocalFiles files_{folder_};
};

TEST_F(LocalFilesTest, ErrorsHaveTheRuntimesNumbers) {
  WriteFile(Path("a"), "conteúdo");
  WriteFile(Path("b"), "");
  std::filesystem::create_directory(Path("pasta"));
  ASSERT_EQ(::mkfifo(Path("fifo").c_str(), 0600), 0);
  ASSERT_EQ(::symlink("laço", Path("laço").c_str()), 0);
  const auto open = [&](const std::string& path) { return ErrorOf([&] { files_.Open(1, path); }); };
  EXPECT_EQ(open(Path("falta")), 53);
  EXPECT_EQ(open(Path("falta/a")), 76);
  EXPECT_EQ(open(Path("a/b")), 76);
  EXPECT_EQ(open(Path("laço")), 76);
  EXPECT_EQ(open(Path("pasta")), 75);
  EXPECT_EQ(open(Path("fifo")), 75);
  EXPECT_EQ(open("/dev/zero"), 75);
  EXPECT_EQ(open(""), 75);
  EXPECT_EQ(open(std::string("/dev\0/null", 10)), 52);
  EXPECT_EQ(open("/" + std::string(300, 'x')), 52);
  EXPECT_EQ(open(Path("a")), 0);
  EXPECT_EQ(open(Path("a")), 55);
  EXPECT_EQ(ErrorOf([&] { files_.Open(512, Path("a")); }), 52);
  EXPECT_EQ(ErrorOf([&] { files_.Rename(Path("a"), Path("b")); }), 58);
  EXPECT_EQ(ErrorOf([&] { files_.Rename(Path("falta"), Path("b")); }), 53);
  EXPECT_EQ(ErrorOf([&] { files_.Rename(Path("a"), Path("falta/b")); }), 76);
  EXPECT_EQ(ErrorOf([&] { files_.Delete(Path("falta")); }), 53);
  char byte = 0;
  EXPECT_EQ(ErrorOf([&] { files_.Read(2, &byte, 1); }), 52);
  if (::geteuid() != 0) {
    ::chmod(Path("b").c_str(), 0);
    EXPECT_EQ(ErrorOf([&] { files_.Open(2, Path("b")); }), 70);
  }
}

TEST_F(LocalFilesTest, NamesAfterABackslashLieInTheFolder) {
  const std::string component_path = folder_.path() + "\\BDTemp.mdb";
  EXPECT_FALSE(files_.Exists(component_path));
  WriteFile(Path("BDTemp.mdb"), "x");
  EXPECT_TRUE(files_.Exists(component_path));
  files_.Rename(component_path, folder_.path() + "\\BDTempPrf.fix");
  EXPECT_TRUE(std::filesystem::exists(Path("BDTempPrf.fix")));

  TemporaryNames names(folder_, files_);
  EXPECT_FALSE(names.Exists(component_path));
  EXPECT_THROW(names.Rename(component_path, folder_.path() + "\\BDTempPrf.fix"), RuntimeError);
  names.Preparar();
  names.Rename(component_path, folder_.path() + "\\BDTempPrf.fix");
  names.Delete(folder_.path() + "\\BDTempPrf.fix");
  EXPECT_FALSE(names.Exists(folder_.path() + "\\BDTempPrf.fix"));
  EXPECT_TRUE(std::filesystem::exists(Path("BDTempPrf.fix"))) << "only the name goes";
}

TEST_F(LocalFilesTest, ReadsToTheEndAndGivesNumbersBack) {
  WriteFile(Path("a"), "12345");
  ASSERT_EQ(files_.FreeFile(), 1);
  files_.Open(1, Path("a"));
  ASSERT_EQ(files_.FreeFile(), 2);
  char buffer[4] = {};
  EXPECT_EQ(files_.Read(1, buffer, 4), 4U);
  EXPECT_EQ(files_.Read(1, buffer, 4), 1U);
  EXPECT_EQ(files_.Read(1, buffer, 4), 0U);
  files_.Close(1);
  files_.Close(1);
  EXPECT_EQ(files_.FreeFile(), 1);
  for (int number = 1; number <= 511; ++number)
    files_.Open(number, Path("a"));
  EXPECT_EQ(ErrorOf([&] { (void)files_.FreeFile(); }), 67);
}

TEST_F(LocalFilesTest, AFileThatChangesInARunIsAnError) {
  const auto read = [&] {
    return ErrorOf([&] {
      files_.Close(1);
      files_.Open(1, Path("a"));
      char byte = 0;
      while (files_.Read(1, &byte, 1) > 0) {
      }
    });
  };
  const std::function<void()> changes[] = {
      [&] { WriteFile(Path("a"), "ABC"); },  // in place, of one size
      [&] { WriteFile(Path("b"), "abc"), std::filesystem::rename(Path("b"), Path("a")); },  // another file
      [&] { std::filesystem::resize_file(Path("a"), 9); }};
  for (const auto& change : changes) {
    WriteFile(Path("a"), "abc");
    files_.BeginRun();
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(read(), 0);
    change();
    EXPECT_EQ(read(), 57);
    files_.BeginRun();
    EXPECT_EQ(read(), 0) << "another run";
    files_.Close(1);
    files_.Open(1, Path("a"));
    change();
    char byte = 0;
    EXPECT_EQ(ErrorOf([&] {
                while (files_.Read(1, &byte, 1) > 0) {
                }
              }),
              57)
        << "while it is read";
    files_.EndRun();
    EXPECT_EQ(read(), 0) << "outside of runs";
  }
}

TEST(LocalApplicationTest, SettingsComeFromTheSectionOfTheIniFile) {
  const ScratchFolder config;
  const ComponentFolder folder(config.path());
  LocalApplication application(folder, config.path());
  const auto setting = [&](std::string_view section, std::string_view key) {
    return application.GetSetting("Brunsel", section, key, "padrão");
  };
  EXPECT_EQ(setting("DB", "DbAtual"), "padrão");
  std::filesystem::create_directory(config.path() + "/Brunsel");
  WriteFile(config.path() + "/Brunsel/configuracao.ini",
            "\xEF\xBB\xBF[Outra]\r\nDbAtual=errado\r\n; DbAtual=x\r\n[ db ]\r\n;DbAtual=y\r\nsem igual\r\n"
            " dbatual =  C:\\dados\\ação=1.mdb \r\nDbAtual=segundo\r\nVazio=\r\n[Fim]\r\nDepois=1");
  EXPECT_EQ(setting("DB", "DbAtual"), "C:\\dados\\ação=1.mdb");
  EXPECT_EQ(setting("DB", "Vazio"), "");
  EXPECT_EQ(setting("DB", "Depois"), "padrão");
  EXPECT_EQ(setting("Fim", "Depois"), "1");
}

TEST(DocumentsTest, CheckDigits) {
  ValidadorDocumentosLocal validador;
  EXPECT_TRUE(validador.ValidarIE("110042490114"));
  EXPECT_EQ(CompletarIE("11004249", "11"), "110042490114");
  EXPECT_TRUE(validador.ValidarCNPJ("11222333000181"));
  EXPECT_EQ(validador.IECerta("110042499119"), "110042490114");
  EXPECT_EQ(validador.CNPJCerto("11222333000199"), "11222333000181");
  EXPECT_EQ(validador.IECerta("11004249911A") + validador.CNPJCerto("1"), "");
  for (const std::string_view ie : {"110042491114", "110042490115", "11004249011", "1100424901140", "",
                                    "11004249011A", " 10042490114", "110.042.4901"}) {
    EXPECT_FALSE(validador.ValidarIE(ie)) << ie;
  }
  for (const std::string_view cnpj :
       {"11222333000171", "11222333000182", "1122233300018", "1122233300018X", ""}) {
    EXPECT_FALSE(validador.ValidarCNPJ(cnpj)) << cnpj;
  }
  // Sums whose remainder has two digits or asks for the digit 0.
  for (int numero = 10000000; numero < 10000300; ++numero) {
    const std::string ie = CompletarIE(std::to_string(numero), "00");
    ASSERT_TRUE(validador.ValidarIE(ie)) << ie;
    const std::string cnpj = CompletarCNPJ(std::to_string(numero) + "0001");
    ASSERT_TRUE(validador.ValidarCNPJ(cnpj)) << cnpj;
  }
}

}  // namespace
}  // namespace tremvik
