// Every rule's example: refused by that rule with its text in its place, and accepted once it is mended.
#include "sample/rule_examples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/rule_kit.h"
#include "component/tremvik.h"
#include "examination/examination.h"
#include "tests/support/tables_host.h"

namespace tremvik {
namespace {

// What a run says, in the form of samples/esperado.json.
struct Import : test::TablesHost {
  Import(test::References& references, const std::string& file) : TablesHost(references, file) {
    answers = {resposta::kNao};
    Tremvik tremvik(host());
    tremvik.Monitora(test::kInputPath);
    estado = tremvik.outcome().estado;
  }
  void Inconsistencia(const FaultLocation& where) override {
    regra = where.regra;
    porque = where.porque;
    nlohmann::ordered_json place{{"linha", where.linha}};
    place.update({{"registro", where.registro}, {"campo", where.campo}, {"posicao", where.posicao}});
    told.push_back(place);
  }
  void Duvida(const FaultLocation& where) override { Inconsistencia(where); }
  [[nodiscard]] nlohmann::ordered_json Boxes() const {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const test::Box& box : boxes)
      all.push_back({{"texto", box.text}, {"estilo", box.style}, {"titulo", box.title}});
    return all;
  }

  Outcome::Estado estado;
  std::string regra, porque;
  nlohmann::ordered_json told = nlohmann::ordered_json::array();
};

TEST(RuleExamples, EachBreaksItsRuleAndNoOther) {
  test::References references;
  for (const sample::RuleExample& example : sample::RuleExamples()) {
    if (!example.motivo.empty()) continue;
    SCOPED_TRACE(example.codigo);
    const std::string file = sample::Broken(example);
    const Import broken(references, file);
    const auto expected = cli::ExpectedOf(example);
    EXPECT_EQ(broken.Boxes(), expected["mensagens"]);
    EXPECT_EQ(broken.told, expected["inconsistencias"]);
    const bool error = example.codigo.starts_with("ERR");
    EXPECT_EQ(broken.estado, error ? Outcome::Estado::kErro : Outcome::Estado::kRecusado);
    EXPECT_EQ(broken.porque, example.porque);
    EXPECT_EQ(broken.regra, example.linha == 0 ? "" : example.codigo);
    EXPECT_EQ(Import(references, sample::Mended(example)).estado, Outcome::Estado::kAceito);
    test::TablesHost host(references, "");
    std::vector<std::string> rules;
    for (const Finding& finding : Examinar(file, host.host(), {}).inconsistencias)
      rules.push_back(finding.regra);
    // Other records can stand in the place of these only where they are out of their own.
    const bool alone = example.codigo != "CR05-02" && example.codigo != "CR20-29";
    EXPECT_THAT(rules, testing::Contains(example.codigo));
    EXPECT_TRUE(rules.size() == 1 || !alone) << testing::PrintToString(rules);
  }
}

}  // namespace
}  // namespace tremvik
