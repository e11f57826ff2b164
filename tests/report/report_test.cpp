#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "report/file_report.h"
#include "report/line_view.h"
#include "report/sha256.h"

namespace tremvik::report {
namespace {

TEST(Sha256Test, KnownDigests) {
  EXPECT_EQ(Sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(Sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(Sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  EXPECT_EQ(Sha256(std::string(1'000'000, 'a')),
            "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(LineViewTest, WrongCharactersAreMarkedAndElseTheField) {
  const std::string file = "01\n\r0712B45 7\r\n2812aZ567890ab\r";
  LineFinder lines(file);
  using Marks = std::vector<std::pair<std::int64_t, std::int64_t>>;
  const auto marks = [&lines](int line, std::string_view field, int column, int width) {
    Place place;
    std::tie(place.linha, place.campo, place.coluna, place.largura) = std::tie(line, field, column, width);
    Marks columns;
    for (const Columns& c : WrongColumns(place, lines.Find(line)))
      columns.emplace_back(c.first, c.last);
    return columns;
  };
  EXPECT_EQ(marks(3, "Valor", 3, 7), (Marks{{5, 5}, {8, 8}}));
  EXPECT_EQ(marks(3, "Valor", 3, 2), (Marks{{3, 4}}));
  EXPECT_EQ(marks(3, "Tamanho", 4, 4), (Marks{{4, 7}}));
  EXPECT_EQ(marks(3, "Valor", 12, 4), (Marks{{12, 15}}));
  EXPECT_EQ(marks(4, "CodAutorizacao", 3, 12), (Marks{{6, 6}}));
  EXPECT_EQ(marks(1, "CR", 1, 2), (Marks{{1, 2}}));
  EXPECT_EQ(marks(3, "", 0, 0), Marks{});
  EXPECT_FALSE(lines.Find(5).exists);
}

TEST(SummaryTest, NamesTheFilesWithTheMostFindingsOnly) {
  Summary summary;
  for (std::size_t i = 0; i < 3 * Summary::kMostFiles; ++i) {
    FileReport file;
    file.arquivo = std::to_string(i);
    Finding question;
    question.regra = "CR10-07";
    question.tipo = FindingKind::kQuestion;
    file.exame.inconsistencias.resize(i % 30, question);
    summary.Add(file);
  }
  EXPECT_EQ(summary.por_arquivo.size(), Summary::kMostFiles);
  EXPECT_EQ(summary.por_arquivo.front().arquivo, "29");
  EXPECT_EQ(summary.por_arquivo.back().inconsistencias, 20U);
  EXPECT_EQ(summary.com_inconsistencias, 58U);
  EXPECT_EQ(summary.por_regra, (std::map<std::string, std::size_t>{{"CR10-07", 870}}));
  EXPECT_EQ(summary.avisos, 870U);
}

}  // namespace
}  // namespace tremvik::report
