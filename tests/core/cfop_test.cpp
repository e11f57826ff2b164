// CFOP details: fields, validity by period, values against each other.
#include <gtest/gtest.h>

#include <functional>

#include "checks/reference_tables.h"
#include "layout/kinds.h"
#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

// `text` with the value in place of each "%".
std::string Filled(std::string_view text, std::string_view value) {
  std::string filled(text);
  for (auto i = filled.find('%'); i != std::string::npos; i = filled.find('%'))
    filled.replace(i, 1, value);
  return filled;
}

std::string Six(std::string_view code) { return std::string(code) + std::string(6 - code.size(), '0'); }

// Calls `check` with each of the codes and whether it is to be refused.
void ForEachCode(std::string_view good, std::string_view bad,
                 const std::function<void(std::string_view, bool)>& check) {
  for (const bool refused : {false, true}) {
    for (const std::string_view code : Split(refused ? bad : good, ' ')) {
      SCOPED_TRACE(code);
      check(code, refused);
    }
  }
}

TEST(Cfop, CodesByPeriod) {
  for (const Row& row : ReadTable("cfop_codes.txt", 6)) {
    SCOPED_TRACE(row.where);
    const auto& cells = row.cells;
    const bool dipam = cells[0] >= "200101" && cells[1].find("RegTrib=04") == std::string::npos;
    ForEachCode(cells[2], cells[3], [&](std::string_view code, bool refused) {
      const bool interstate = code.starts_with('2') || code.starts_with('6');
      const std::string kinds = std::string("05 10") + (interstate ? " 14" : "") + (dipam ? " 30" : "");
      const std::string edits = cells[1] + "; 05.Ref=" + cells[0] + "; 10.CFOP=" + Six(code);
      Check(
          {kinds, edits, refused ? 3 : kAccepted, Filled(cells[4], Six(code)), Filled(cells[5], Six(code))});
    });
  }
}

TEST(Cfop, OperationsThatNeedDipamValues) {
  for (const Row& row : ReadTable("cfop_dipam.txt", 5)) {
    SCOPED_TRACE(row.where);
    const auto& cells = row.cells;
    ForEachCode(cells[2], cells[1], [&](std::string_view code, bool refused) {
      const std::string kinds = code.starts_with('6') ? "05 10 14" : "05 10";
      const std::string edits = "05.Ref=" + cells[0] + "; 10.CFOP=" + Six(code);
      Check({kinds, edits, refused ? 3 : kAccepted, cells[3], cells[4]});
      if (refused) Check({kinds + " 30", edits});
    });
  }
}

struct Tax {
  std::string_view base, tax;
  bool asks;
};
constexpr Tax kTaxes[] = {
    {"0", "0", false},          {"0", "1", false},         {"100000", "1", false},
    {"100000", "25000", false}, {"100000", "25001", true}, {"100002", "25001", false},  // 25000,5 goes up
    {"100002", "25002", true},  {"100001", "25001", true},                              // 25000,25 goes down
    {"1", "1", true},           {"2", "1", false},         {"999999999999999", "250000000000000", false},
};

TEST(Cfop, TaxAgainstBase) {
  for (const auto& [base, tax, asks] : kTaxes) {
    SCOPED_TRACE(std::string(base) + " " + std::string(tax));
    FileBuilder file("05 10 31");
    file.With("10.BaseCálculo", base).With("10.Imposto", tax);
    for (const int answer : {6, 7}) {
      Instance run;
      run.host.answers = {answer};
      run.Import(file.Bytes());
      ASSERT_EQ(run.host.boxes.size(), asks && answer == 6 ? 2U : 1U);
      EXPECT_EQ(run.Succeeded(), !asks || answer == 6);
      EXPECT_EQ(run.tremvik.bolRetMonitora(), asks && answer == 7);
      EXPECT_EQ(run.host.boxes.front().style, asks ? 324 : 64);
    }
  }
}

TEST(Cfop, TheQuestionAndItsAnswers) {
  const std::string question =
      "Sr(a) usuário(a), entre em contato com a empresa\r\n"
      "responsável pela geração do arquivo Pré-Formatado\r\n"
      "e informe a mensagem abaixo : \r\n\r\n"
      "Tabela 03, CR=10, Campo - Imposto\r\nInconsistente, Posição 39, Linha nº 4\r\nDeseja continuar Sim/Não ? ";
  FileBuilder file("05 10*2 31");
  file.Edit("10#2.BaseCálculo=100; 10#2.Imposto=26");
  Instance no;
  no.host.answers = {7};
  no.Import(file.Bytes());
  EXPECT_EQ(no.host.boxes, (Boxes{{question, 324, "Atenção"}}));
  EXPECT_EQ(no.host.doubts.at(0).porque, "25% de 1,00: 0,25; Imposto: 0,26; diferença 0,01");
  EXPECT_EQ(no.tremvik.Mensagem(), question);
  EXPECT_EQ(no.tremvik.NroLinha(), 4);
  EXPECT_EQ(no.tremvik.outcome().estado, Outcome::Estado::kRecusado);
  const std::vector<std::string> closing = {"Dúvida 4 10.Imposto", "Caixa", "Close 1", "Ponteiro 0"};
  EXPECT_EQ(Tail(no.host.log, 4), closing);

  Instance yes;  // and the checks go on with the next one
  yes.host.answers = {6};
  yes.Import(file.With("10#2.CFOP", "510900").Bytes());
  ASSERT_EQ(yes.host.boxes.size(), 2U);
  EXPECT_EQ(
      yes.host.boxes.back().text,
      Report("Tabela 3, CR=10, Posição 3 - Campo CFOP Inválido para Ref > 200212 - CFOP = 510900", "", 4));
}

TEST(Cfop, LookUpsOfTheTables) {
  struct Query {
    std::string_view ref, code, form, known, description;  // the ends of the two queries
  };
  constexpr Query kQueries[] = {
      {"200212", "112000", "1.12", " = '1' AND GRUPO = 0", "='1')"},
      {"200212", "112100", "1.12.1", " = '1' AND GRUPO = 0", "='1')"},
      {"200301", "110200", "1.102", " = '2' AND GRUPO = 0", "='2')"},
      {"200312", "110200", "1.102", " = '2' AND GRUPO = 0", "='2')"},
      {"200401", "110200", "1.102", " > '1' AND GRUPO = 0", "> '1')"},
      {"200212", "100000", "1.00", " = '1' AND GRUPO = 0", ""},  // too short a code has no description
  };
  constexpr std::string_view kDescription =
      "SELECT tblQuadroCFOPs.Descrição FROM tblQuadroCFOPs WHERE ((tblQuadroCFOPs.[Grupo 15]='%') OR "
      "(tblQuadroCFOPs.[Grupo 26]='%') OR (tblQuadroCFOPs.[Grupo 37]='%')) AND (tblQuadroCFOPs.Conjunto";
  for (const auto& [ref, code, form, known, description] : kQueries) {
    SCOPED_TRACE(code);
    std::vector<std::string> expected = {
        Filled("SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '%' and Conjunto", form).append(known)};
    if (!description.empty()) expected.push_back(Filled(kDescription, form).append(description));
    Instance run;
    run.Import(FileBuilder("05 10").With("05.Ref", ref).With("10.CFOP", code).Bytes());
    EXPECT_TRUE(run.Succeeded());
    EXPECT_EQ(run.host.queries, expected);
  }
}

TEST(ReferenceTables, QueryOfEachKindAndMode) {
  MemoryHost host;
  TabelasFixas tables(host, host);
  for (const auto& [where, cells] : ReadTable("look_ups.txt", 4)) {
    EXPECT_FALSE(tables.NaoExisteEmFixas(FindKind(cells[0])->kind, cells[1], cells[2])) << where;
    EXPECT_EQ(host.queries.back(), cells[3]);
  }
  EXPECT_TRUE(tables.NaoExisteEmFixas(Kind::kCr20, "999.98", "0"));
  EXPECT_EQ(host.open_databases, 0);
  host.Fail("OpenRecordset", 3075);
  EXPECT_THROW((void)tables.NaoExisteEmFixas(Kind::kCr14, "3'5", ""), RuntimeError);
  EXPECT_EQ(host.open_databases, 0);
}

}  // namespace
}  // namespace tremvik::test
