#include "anonymizer/anonymizer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "anonymizer/masked_report.h"
#include "examination/examination.h"
#include "sample/draw.h"
#include "sample/rule_examples.h"
#include "sample/sample.h"
#include "tests/support/tables_host.h"

namespace tremvik::anonymizer {
namespace {

using Told = std::vector<std::tuple<std::string, int, int, std::string, bool, FindingKind>>;

class AnonymizerTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { references_ = std::make_unique<test::References>(); }
  static void TearDownTestSuite() { references_.reset(); }

  static Examination Examine(std::string_view file) {
    test::TablesHost host(*references_, "");
    return Examinar(file, host.host(), {.limite = 0});
  }
  // Each finding's rule and place; which of them the import tells is among it.
  static Told Of(const std::string& file) {
    const Examination exam = Examine(file);
    Told told{{"", exam.declaracoes, exam.registros, "", exam.estado == FileState::kAccepted, {}}};
    for (const Finding& f : exam.inconsistencias)
      told.emplace_back(f.regra, f.linha, f.coluna, f.campo, f.doImportador, f.tipo);
    for (const Unexamined& gap : exam.naoExaminado)
      told.emplace_back("", gap.linha, gap.ate, "", false, FindingKind{});
    return told;
  }
  static void ExpectAlike(const std::string& file, std::uint64_t seed) {
    const Anonymized other = Anonymize(file, seed);
    EXPECT_EQ(other.bytes.size(), file.size());
    EXPECT_EQ(Of(other.bytes), Of(file));
  }
  static inline std::unique_ptr<test::References> references_;
};

// Characters, lines and the text as a whole as files get broken.
std::string Spoiled(std::string file, sample::Draw& draw) {
  for (int faults = draw.Between(1, 6); faults > 0; --faults) {
    const auto at = draw.Between<std::size_t>(1, file.size() - 2);
    const std::size_t begin = file.rfind('\n', at - 1) + 1;
    const std::size_t end = std::min(file.find('\n', at), file.size() - 1) + 1;
    const std::string line = file.substr(begin, end - begin);
    switch (draw.Between(0, 6)) {
      case 0:
        file[at] = " +,.A\xE7"[draw.Between<std::size_t>(0, 5)];
        break;
      case 1:
        file[at] = draw.Between('0', '9');
        break;
      case 2:
        file.insert(at, 1, '0');
        break;
      case 3:
        file.erase(at, 1);
        break;
      case 4:
        file.erase(begin, line.size());
        break;
      case 5:
        file.insert(begin, line);
        break;
      default:
        file.erase(begin, line.size()).insert(std::min(file.size(), file.find('\n', begin)) + 1, line);
    }
    if (file.size() < 100) break;
  }
  std::string text;
  switch (draw.Between(0, 9)) {
    case 0:
      for (const char c : file)
        text.append(1, c).append(1, '\0');
      return "\xFF\xFE" + text;
    case 1:
      return "\xEF\xBB\xBF" + file + "\x1A";
    case 2:
      std::erase(file, '\r');
      return file;
    case 3:
      return file.substr(0, draw.Between<std::size_t>(1, file.size()));
    default:
      return file;
  }
}

TEST_F(AnonymizerTest, FilesOfEachRuleAreToldAlike) {
  for (const sample::RuleExample& example : sample::RuleExamples()) {
    SCOPED_TRACE(example.codigo);
    if (example.motivo.empty()) ExpectAlike(sample::Broken(example), 3);
  }
}

TEST_F(AnonymizerTest, SpoiledFilesAreToldAlike) {
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    sample::Draw draw(seed);
    sample::Options options;
    options.declaracoes = draw.Between(1, 12);
    options.seed = seed;
    options.duvida = draw.Chance(20);
    const std::string file = sample::Generate(options);
    ExpectAlike(file, seed);
    ExpectAlike(Spoiled(file, draw), seed);
  }
}

TEST_F(AnonymizerTest, NothingOfTheTaxpayersIsLeft) {
  const std::string file = sample::Generate({.declaracoes = 100, .seed = 5});
  const std::string other = Anonymize(file, 1).bytes;
  EXPECT_EQ(Anonymize(file, 1).bytes, other);
  EXPECT_NE(Anonymize(file, 2).bytes, other);
  std::size_t amounts = 0;
  std::size_t kept = 0;
  for (std::size_t at = 0; at < file.size(); at = file.find('\n', at) + 1) {
    const auto differs = [&](std::size_t column, std::size_t width) {
      EXPECT_NE(other.substr(at + column - 1, width), file.substr(at + column - 1, width))
          << file.substr(at, 40);
    };
    const std::string code = file.substr(at, 2);
    if (code == "05" || code == "25" || code == "26" || code == "27") differs(3, 12);
    if (code == "05") differs(15, 14);
    if (code == "28") differs(3, 12);
    if (code == "31") differs(3, 15);
    if (code != "07" || file.substr(at + 3, 15).find_first_of("123456789") > 12) continue;
    ++amounts;
    kept += other.substr(at + 3, 15) == file.substr(at + 3, 15) ? 1U : 0U;
  }
  EXPECT_GT(amounts, 50U);
  EXPECT_EQ(kept, 0U);
}

TEST_F(AnonymizerTest, AReportTellsTheOtherFile) {
  report::FileReport file;
  file.conteudo = sample::Broken(*sample::FindRuleExample("CR25-07"));
  const std::string ie = file.conteudo.substr(file.conteudo.find("\n05") + 3, 12);
  file.arquivo = "c/" + ie + " de " + ie.substr(0, 3) + "." + ie.substr(3, 3) + "." + ie.substr(6, 3) + "." +
                 ie.substr(9) + ".txt";
  file.exame = Examine(file.conteudo);
  Finding held;
  held.regra = "CR05-43";
  held.linha = 2;
  held.mensagem = held.porque = held.valor = ie;
  file.exame.inconsistencias.push_back(held);
  const report::FileReport masked = Masked(file, MakeMask(file.conteudo, Examine, 9));
  ASSERT_EQ(masked.exame.inconsistencias.size(), 2U);
  const Finding& told = masked.exame.inconsistencias.front();
  EXPECT_EQ(told.regra, "CR25-07");
  EXPECT_TRUE(told.doImportador);
  EXPECT_NE(masked.conteudo.find("\n25" + told.valor), std::string::npos);
  EXPECT_EQ(file.conteudo.find(told.valor), std::string::npos);
  const Finding& bare = masked.exame.inconsistencias.back();
  EXPECT_EQ(bare.mensagem, "Tabela 2, CR=05, Campo -  Ref\r\nEsta Referência já existente, Posição 3.");
  EXPECT_EQ(bare.porque + bare.valor, "");
  const std::string now = masked.conteudo.substr(masked.conteudo.find("\n05") + 3, 12);
  EXPECT_EQ(masked.arquivo, "c/" + now + " de " + now.substr(0, 3) + "." + now.substr(3, 3) + "." +
                                now.substr(6, 3) + "." + now.substr(9) + ".txt");
  EXPECT_NE(now, ie);
}

TEST_F(AnonymizerTest, WhatIsNoSuchFileIsOverwritten) {
  const Anonymized other = Anonymize("%PDF-1.4 Maria 12345", 1);
  EXPECT_FALSE(other.known);
  EXPECT_EQ(other.bytes.find_first_of("MariaPDF"), std::string::npos);
}

}  // namespace
}  // namespace tremvik::anonymizer
