#include "report/search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "text/folding.h"

namespace tremvik::report {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;

// Types a message as it is heard.
class Typist {
 public:
  // The rule's message with values of a run, as `slip` has it: 0 the words without accents and punctuation in
  // any case, 1 without blanks between header and line, 2 with a letter wrong, 3 without a word.
  std::string Type(const Rule& rule, int slip) {
    std::string text = rule.texto1 + "\r\n" + rule.texto2;
    for (auto gap = text.find("{}"); gap != std::string::npos; gap = text.find("{}"))
      text.replace(gap, 2, std::to_string(Draw(99'999)));
    std::string words = text::Folded(text);
    if (slip == 1)
      words = "sr usuario entre em contato com a empresa e informe a mensagem " + words + " linha no 96";
    if (slip == 1) std::erase(words, ' ');
    if (slip == 2) words[words.find_first_of("aeiou", Draw(words.size() / 2))] = 'k';
    if (slip == 3) DropWord(words);
    for (char& c : words) {
      if (Draw(3) == 0) c = static_cast<char>(std::toupper(c));
      if (c == ' ' && Draw(3) == 0) c = ",-/\n"[Draw(4)];
    }
    return words;
  }

 private:
  std::size_t Draw(std::size_t below) { return random_() % below; }
  void DropWord(std::string& words) {
    const auto begin = words.find(' ', Draw(words.size() / 2));
    if (std::ranges::count(words, ' ') > 1 && begin != std::string::npos)
      words.erase(begin, words.find(' ', begin + 1) - begin);
  }
  std::mt19937 random_{20120331};  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts each time
};

TEST(SearchTest, EveryMessageIsFoundHoweverItIsTyped) {
  Typist typist;
  for (const Rule& rule : Catalogue()) {
    for (int slip = 0; slip < 4; ++slip) {
      const std::string typed = typist.Type(rule, slip);
      SCOPED_TRACE(rule.codigo + ": " + typed);
      const auto found = FindByMessage(typed);
      const auto is_rule = Field(&Candidate::regra, &rule);
      // Without one of its words another rule's message may be as near.
      const testing::Matcher<bool> nearest = slip == 3 ? testing::A<bool>() : testing::Eq(true);
      EXPECT_THAT(found, Contains(AllOf(is_rule, Field(&Candidate::melhor, nearest))));
    }
  }
}

std::vector<std::string> Codes(std::string_view typed) {
  std::vector<std::string> codes;
  for (const Candidate& one : FindByMessage(typed)) {
    if (one.melhor) codes.push_back(one.regra->codigo);
  }
  return codes;
}

TEST(SearchTest, TheNearestComesFirstAndWhatIsFarNotAtAll) {
  EXPECT_THAT(Codes("tabela 3 cr10 campo base calculo inconsistente posicao 24"), ElementsAre("CR10-11"));
  EXPECT_THAT(Codes("Tabela 07, CR=25, Campo - IE\r\nInconsistente, Posição 3\r\nLinha nº 8"),
              ElementsAre("CR25-06"));
  EXPECT_THAT(Codes("tabela 7, cr=25 campo ie inconsistente posicao 3"), ElementsAre("CR25-03", "CR25-06"));
  EXPECT_THAT(Codes("este cfop esta dezabilitado"), ElementsAre("CR10-25"));
  EXPECT_THAT(Codes("6 - Estouro"), ElementsAre("ERR-6"));
  for (const std::string_view nothing : {"", "?", "x", "o gato subiu no telhado", "marco.txt", "\xFF\xC3"})
    EXPECT_TRUE(FindByMessage(nothing).empty()) << nothing;
  EXPECT_LT(FindByMessage(std::string(1'000'000, '1')).size(), 5U);
}

TEST(SearchTest, CodesAreReadAsPeopleTypeThem) {
  for (const std::string_view typed : {"CR10-07", "cr10-7", "Cr 10 07", "cr1007", "regra CR=10-07"})
    EXPECT_EQ(CodeIn(typed), "CR10-07") << typed;
  EXPECT_EQ(CodeIn("arq3"), "ARQ-03");
  EXPECT_EQ(CodeIn("erro 13"), "ERR-13");
  for (const std::string_view typed : {"", "CR10", "13 - Tipos incompatíveis", "CR=10, Posição 3", "arq 1 2"})
    EXPECT_EQ(CodeIn(typed), "") << typed;
}

}  // namespace
}  // namespace tremvik::report
