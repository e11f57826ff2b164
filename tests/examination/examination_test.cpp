#include "examination/examination.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "component/tremvik.h"
#include "layout/kinds.h"
#include "sample/draw.h"
#include "sample/sample.h"
#include "tests/support/tables_host.h"

namespace tremvik {
namespace {

using Lines = std::vector<std::string>;
using Places = std::set<std::tuple<int, int, std::string>>;  // line, column, field

Lines SplitFile(std::string_view file) {
  Lines lines;
  for (std::size_t end = 0; (end = file.find('\n')) != file.npos; file.remove_prefix(end + 1))
    lines.emplace_back(file.substr(0, end + 1));
  return lines;
}

std::string Joined(const Lines& lines) {
  std::string file;
  for (const std::string& line : lines)
    file += line;
  return file;
}

class ExaminationTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { references_ = std::make_unique<test::References>(); }
  static void TearDownTestSuite() { references_.reset(); }

  // What one run of the component tells of the file, its questions answered No.
  static Places OfImporter(const std::string& file) {
    test::TablesHost host(*references_, file);
    host.keeps_log = false;
    host.answers = {resposta::kNao};
    Tremvik tremvik(host.host());
    tremvik.Monitora(test::kInputPath);
    Places places;
    for (const auto& place : host.places)
      places.emplace(place.line, place.position, place.field);
    return places;
  }
  static Examination Examined(const std::string& file, ExaminationOptions options = {.limite = 0}) {
    test::TablesHost host(*references_, "");
    return Examinar(file, host.host(), options);
  }
  // The places of all findings, or of the importer's own.
  static Places Found(const Examination& examination, bool importer_only = false) {
    Places places;
    for (const Finding& finding : examination.inconsistencias) {
      if (finding.doImportador || !importer_only)
        places.emplace(finding.linha, finding.coluna, finding.campo);
    }
    return places;
  }
  static inline std::unique_ptr<test::References> references_;
};

// The first record of those that one fault may touch: a CFOP or an occurrence stands for what is under it.
std::size_t UnitOf(const Lines& lines, std::size_t at) {
  const auto code = [&](std::size_t i) { return lines[i].substr(0, 2); };
  if (code(at) == "14" || code(at) == "18") {
    while (code(at) != "10")
      --at;
  }
  if (code(at) >= "25" && code(at) <= "28") {
    while (code(at) != "20")
      --at;
  }
  return at;
}

// Fields by which records are ordered or other records judged: a fault in them is not independent of others.
const std::set<std::string_view> kShared{
    "IE", "Ref", "RegTrib",        "RefInicial",   "CFOP",          "CódSubItem",
    "RE", "NF",  "CodAutorizacao", "IESubstituto", "IESubstituído", "PrópriaOuST"};

void Spoil(std::string& line, sample::Draw& draw) {
  const KindInfo& kind = *FindKind(line.substr(0, 2));
  const FieldInfo& field = kind.fields[draw.Between<std::size_t>(1, kind.fields.size() - 2)];
  if (kShared.contains(field.name)) return;
  const auto at = static_cast<std::size_t>(field.position - 1);
  const auto width = static_cast<std::size_t>(field.width);
  switch (draw.Between(0, 5)) {
    case 0:
      line[at + draw.Between<std::size_t>(0, width - 1)] = 'x';
      break;
    case 1:
      line.replace(at, width, width, '0');
      break;
    case 2:
      line.replace(at, width, draw.Digits(width));
      break;
    case 3:
      line[at + width - 1] = line[at + width - 1] == '7' ? '1' : '7';
      break;
    case 4:
      line.erase(at, 1);
      break;
    default:
      line.replace(0, 2, "99");
  }
}

TEST_F(ExaminationTest, FaultsPlantedInOneFileAreFoundAndNothingElse) {
  int planted = 0;
  for (std::uint64_t seed = 1; seed <= 500 && !HasFailure(); ++seed) {
    sample::Draw draw(seed);
    const Lines sound = SplitFile(sample::Generate({.declaracoes = draw.Between(1, 6), .seed = seed}));
    Lines spoiled = sound;
    std::set<std::size_t> used;
    std::map<std::size_t, Places> told;  // by the spoiled line
    for (int i = draw.Between(1, 20); i > 0; --i) {
      const auto at = draw.Between<std::size_t>(0, sound.size() - 1);
      const std::size_t unit = UnitOf(sound, at);
      if (used.contains(unit) || used.contains(at - 1) || used.contains(at + 1)) continue;
      used.insert(unit);
      used.insert(at);
      Lines single = sound;
      Spoil(single[at], draw);
      const Places places = OfImporter(Joined(single));
      if (places.empty()) continue;
      spoiled[at] = single[at];
      told[at] = places;
    }
    Places expected;
    for (const auto& [at, places] : told)
      expected.insert(places.begin(), places.end());
    planted += static_cast<int>(told.size());
    const Examination all = Examined(Joined(spoiled));
    const auto unseen = [&](const auto& place) {
      return std::ranges::any_of(all.naoExaminado, [&](const Unexamined& gap) {
        return std::get<0>(place) > gap.linha && std::get<0>(place) <= gap.ate;
      });
    };
    Places found = Found(all);
    std::erase_if(found, unseen);
    std::erase_if(expected, unseen);
    EXPECT_EQ(found, expected) << "seed " << seed;
    EXPECT_EQ(Found(all, true), OfImporter(Joined(spoiled))) << "seed " << seed;
    EXPECT_EQ(all.estado == FileState::kAccepted, told.empty());
    if (told.empty() || !all.naoExaminado.empty()) continue;
    const auto& [mended, gone] = *told.begin();
    spoiled[mended] = sound[mended];
    for (const auto& place : gone)
      expected.erase(place);
    EXPECT_EQ(Found(Examined(Joined(spoiled))), expected)
        << "seed " << seed << ", line " << mended + 1 << " mended";
  }
  EXPECT_GT(planted, 1000);
}

TEST_F(ExaminationTest, OneCauseOfManyFaultsIsToldOnce) {
  const std::string file = sample::Generate({.declaracoes = 3, .seed = 5});
  const Lines lines = SplitFile(file);
  const int last = static_cast<int>(lines.size());
  const auto all = [](std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
      text.replace(at, from.size(), to);
    return text;
  };
  std::string wide;  // UTF-16
  for (const char c : file)
    wide.append({c, '\0'});
  const struct {
    std::string file;
    std::string_view regra, porque;
    int linha;
  } kCases[] = {
      {"\xEF\xBB\xBF" + file, "ARQ-02", "marca de ordem de bytes", 1},
      {wide, "ARQ-02", "UTF-16", 1},
      {all(file, "\r\n", "\n"), "CR01-08", "LF (0A)", 1},
      {file + "\x1A", "ARQ-02", "Ctrl-Z", last + 1},
      {file + "\r\n  \r\n", "ARQ-02", "linhas em branco", last + 1},
      {file.substr(0, file.size() - 9), "ARQ-03", "termina no meio", last},
      {"%PDF-1.4\n%%EOF\n", "ARQ-02", "PDF", 1},
      {Joined({lines.begin() + 1, lines.end()}), "ARQ-06", "informados: 0", 1},
      {"", "ARQ-01", "", 0},
  };
  for (const auto& [bytes, regra, porque, linha] : kCases) {
    const Examination examination = Examined(bytes);
    ASSERT_FALSE(examination.inconsistencias.empty()) << porque;
    const Finding& finding = examination.inconsistencias.front();
    EXPECT_EQ(finding.regra, regra);
    EXPECT_EQ(finding.linha, linha) << regra;
    EXPECT_THAT(finding.porque, testing::HasSubstr(porque));
    EXPECT_TRUE(finding.doImportador);
    EXPECT_EQ(examination.inconsistencias.size(), 1U) << porque;
  }
}

// A blank too many in the value of occurrences, in lines of the right length or not, and a lost digit.
TEST_F(ExaminationTest, ShiftedLinesAreOneCause) {
  const Lines sound = SplitFile(sample::Generate({.declaracoes = 3, .seed = 5}));
  std::size_t first = 0;
  while (!sound[first].starts_with("20"))
    ++first;
  const auto told = [&](const Lines& lines) {
    const Examination all = Examined(Joined(lines));
    EXPECT_EQ(std::ranges::count_if(all.inconsistencias, [](const Finding& f) { return !f.doImportador; }),
              0);
    const auto cause = std::ranges::find_if(all.inconsistencias, [](const Finding& f) {
      return f.porque.find("deslocada") != std::string::npos;
    });
    return cause == all.inconsistencias.end() ? "" : cause->porque;
  };
  Lines lines = sound;
  lines[first].insert(10, " ");
  EXPECT_EQ(told(lines),
            "a linha tem 440 caracteres; o certo são 439. A linha parece deslocada 1 coluna para a "
            "direita a partir da coluna 11, onde algo sobra.");
  lines[first].erase(439, 1);
  EXPECT_THAT(told(lines), testing::HasSubstr("A linha parece deslocada 1 coluna para a direita"));
  lines[first] = sound[first];
  lines[first].insert(439, " ").erase(9, 1);
  EXPECT_THAT(told(lines), testing::HasSubstr("para a esquerda a partir de uma das colunas 3 a 2"));
  lines = sound;
  for (std::string& line : lines) {
    if (line.starts_with("10")) line.insert(40, "  ");
  }
  EXPECT_THAT(told(lines),
              testing::HasSubstr("2 colunas para a direita a partir da coluna 41, onde algo sobra; outras"));
  for (std::string& line : lines = sound)
    line.insert(0, " ");
  EXPECT_EQ(Examined(Joined(lines)).inconsistencias.size(), 1U);
  lines = sound;
  lines[first][10] = 'x';  // a letter in one field is no shift
  EXPECT_EQ(told(lines), "");
}

TEST_F(ExaminationTest, QuestionsAndTheLimitAreToldAsSuch) {
  const std::string file = sample::Generate({.duvida = true});
  const Examination no = Examined(file);
  ASSERT_EQ(no.inconsistencias.size(), 1U);
  EXPECT_EQ(no.inconsistencias[0].tipo, FindingKind::kQuestion);
  EXPECT_THAT(no.inconsistencias[0].mensagem,
              testing::EndsWith("Linha nº " + std::to_string(no.inconsistencias[0].linha)));
  EXPECT_EQ(no.estado, FileState::kRefused);
  EXPECT_EQ(Examined(file, {.limite = 0, .responder_sim = true}).estado, FileState::kAccepted);

  Lines lines = SplitFile(sample::Generate({.declaracoes = 40, .seed = 2}));
  for (std::string& line : lines) {
    if (line.starts_with("10")) line[30] = 'x';
  }
  const Examination limited = Examined(Joined(lines), {.limite = 7});
  EXPECT_EQ(limited.inconsistencias.size(), 7U);
  EXPECT_TRUE(limited.limitado);
  EXPECT_EQ(limited.naoExaminado.back().ate, static_cast<int>(lines.size()));

  std::string headers = "01\r\n";  // more than Q05 can announce, and more than are looked at
  for (int i = 0; i < 50'000; ++i)
    headers += "05\r\n";
  const Examination many = Examined(headers, {.limite = 3});
  EXPECT_TRUE(many.limitado);
  EXPECT_EQ(many.naoExaminado.back().ate, 50'001);
}

}  // namespace
}  // namespace tremvik
