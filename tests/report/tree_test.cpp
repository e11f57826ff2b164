#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "report/tree_view.h"
#include "sample/file_builder.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string Shown(const std::string& bytes, std::size_t width = 100, const FindingsByLine& findings = {}) {
  const FileTree tree(bytes);
  std::string out;
  for (const TreeRecord& record : tree.records())
    out += RenderRecord(tree, record, findings, FieldLayout::kFlowing, {.colour = false, .width = width});
  return out;
}

TEST(TreeTest, FieldsAreShownAsPeopleReadThem) {
  sample::FileBuilder file("05 07 10 20 25");
  file.Edit("07.Valor=123456; 07.Data=20120331; 10.CFOP=110100; 20.CódSubItem=00223; 10.Outras=1O");
  file.Edit("05.IE=110042490114; 20.FLegal=art. 5");
  std::vector<Finding> findings(1);
  findings[0].regra = "CR10-14";
  findings[0].linha = 4;
  findings[0].campo = "Outras";
  findings[0].mensagem = "Campo - Outras\r\nInconsistente";
  findings[0].porque = "há uma letra";
  const std::string shown = Shown(file.Bytes(), 80, ByLine(findings));
  for (const std::string_view part :
       {"    1  CR=01 registro mestre\n", "IE: 110.042.490.114 · ", "Ref: 03/2012 · ",
        "RefInicial: 000000 · ", "Q20: 1", "    3      CR=07 pagamento\n",
        "Valor: 1.234,56 · Data: 31/03/2012\n", "CFOP: 1.101 · ", " · ✗ Outras: \"00000000000001O\"\n",
        "\n             ✗ CR10-14: Campo - Outras Inconsistente (há uma letra)\n", "CódSubItem: 002.23 · ",
        "FLegal: art. 5"})
    EXPECT_THAT(shown, HasSubstr(part));
  EXPECT_THAT(shown, Not(HasSubstr("Separadores")));
}

TEST(TreeTest, ABrokenFileIsShownAsFarAsItGoes) {
  const std::string whole = sample::FileBuilder("05 07 20 25").Bytes();
  const std::string orphan = whole.substr(32).append(R"(29DONO)");
  EXPECT_THAT(Shown(orphan), testing::AllOf(HasSubstr("CR=05 declaração, sem o CR=01 a que pertence"),
                                            HasSubstr("linha que não é um registro conhecido"),
                                            HasSubstr("Linha: \"29DONO\"")));
  EXPECT_THAT(Shown(whole.substr(0, whole.size() - 6)),
              HasSubstr("Valor: \"00000000000\" · Separadores: (falta)"));
  EXPECT_THAT(Shown("0101\r\n\r\n07\n"), HasSubstr("Separadores: \"\\x0A\""));
  const FileTree marked("\xEF\xBB\xBF" + whole);
  EXPECT_THAT(marked.causa(), HasSubstr("EF BB BF"));
  EXPECT_EQ(marked.records().front().kind, &InfoOf(Kind::kCr01));
  std::string wide = whole;
  wide.insert(wide.rfind("\r\n"), 100'000, '\x1B');
  EXPECT_THAT(Shown(wide), HasSubstr("x1B…\" (100.000\n"));
  const FileTree many(std::string(50'000, '\r'));
  EXPECT_TRUE(many.cut());
}

// Nothing that a file holds reaches the screen but as characters that are seen, on lines that fit.
TEST(TreeTest, AnyBytesAreShownWithoutHarm) {
  std::mt19937 random(7);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes each time
  const std::string sound = sample::FileBuilder("05 07 10 14 18 20 25 26 27 28 30 31").Bytes();
  for (int round = 0; round < 300; ++round) {
    std::string bytes = sound;
    for (int i = 0; i < 20; ++i) {
      const auto at = random() % bytes.size();
      if (random() % 4 == 0) {
        bytes.erase(at, random() % 40);
      } else {
        bytes[at] = static_cast<char>(random());
      }
    }
    const FileTree tree(bytes);
    for (const TreeRecord& record : tree.records()) {
      for (const auto layout : {FieldLayout::kFlowing, FieldLayout::kOneALine}) {
        const std::string shown = RenderRecord(tree, record, {}, layout, {.colour = false, .width = 60});
        for (std::string_view rest = shown; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
          const std::string_view line = rest.substr(0, rest.find('\n'));
          EXPECT_LE(text::Cells(line), 60U) << line;
          EXPECT_EQ(text::Visible(line), line);
        }
      }
      EXPECT_NO_THROW(static_cast<void>(RecordAsJson(tree, record, {}).dump()));
    }
  }
}

}  // namespace
}  // namespace tremvik::report
