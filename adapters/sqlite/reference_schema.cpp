#include "adapters/sqlite/reference_schema.h"

#include <fmt/format.h>

#include <array>

namespace tremvik {
namespace {

// What must hold for every row of a table, as SQL, and what to say of a row for which it does not.
struct RowRule {
  std::string_view table;
  std::string_view condition;
  std::string_view words;
};

constexpr std::string_view kConjunto = "Conjunto IN ('1', '2', '3')";
constexpr std::string_view kConjuntoWords = "Conjunto deve ser 1, 2 ou 3";
constexpr std::array kRowRules{
    RowRule{"tblTodosCFOPs", kConjunto, kConjuntoWords},
    RowRule{"tblTodosCFOPs", "GRUPO IN (0, 1)", "GRUPO deve ser 0 (operação) ou 1 (título de grupo)"},
    RowRule{"tblTodosCFOPs",
            "Conjunto <> '1' OR CFOP GLOB '[1-9].[0-9][0-9]' OR CFOP GLOB '[1-9].[0-9][0-9].[0-9]'",
            "no Conjunto 1 o CFOP tem a forma 1.12 ou 1.12.1"},
    RowRule{"tblTodosCFOPs", "Conjunto = '1' OR CFOP GLOB '[1-9].[0-9][0-9][0-9]'",
            "nos Conjuntos 2 e 3 o CFOP tem a forma 1.102"},
    RowRule{"tblQuadroCFOPs", kConjunto, kConjuntoWords},
    RowRule{"tblQuadroCFOPs", "Descrição <> ''", "Descrição vazia"},
    RowRule{"tblQuadroCFOPs", "[Grupo 15] <> '' OR [Grupo 26] <> '' OR [Grupo 37] <> ''",
            "nenhum dos três grupos tem CFOP"},
    RowRule{"tblQuadroCFOPs", "[Grupo 15] = '' OR [Grupo 15] GLOB '[15].[0-9][0-9]*'",
            "Grupo 15 deve estar vazio ou começar por 1 ou 5"},
    RowRule{"tblQuadroCFOPs", "[Grupo 26] = '' OR [Grupo 26] GLOB '[26].[0-9][0-9]*'",
            "Grupo 26 deve estar vazio ou começar por 2 ou 6"},
    RowRule{"tblQuadroCFOPs", "[Grupo 37] = '' OR [Grupo 37] GLOB '[37].[0-9][0-9]*'",
            "Grupo 37 deve estar vazio ou começar por 3 ou 7"},
    RowRule{"tblEstados", "Código GLOB '[0-9][0-9]'", "Código deve ter dois algarismos"},
    RowRule{"tblEstados", "Sigla GLOB '[A-Z][A-Z]'", "Sigla deve ter duas letras maiúsculas"},
    RowRule{"tblMunicípiosZFM_ALC", "CódMunicípio <> '' AND CódMunicípio NOT GLOB '*[^0-9]*'",
            "CódMunicípio deve ter só algarismos"},
    RowRule{"tblQuadroOcorrências", "CódSubItem GLOB '[0-9][0-9][0-9].[0-9][0-9]'",
            "CódSubItem tem a forma 002.23"},
    RowRule{"tblQuadroOcorrências", "OpPróprias IN (0, 1, -1)",
            "OpPróprias deve ser 1 (operações próprias) ou 0 (substituição tributária)"},
    RowRule{"tblcódigosdipam", "length(código) BETWEEN 1 AND 3", "código deve ter de um a três caracteres"},
    RowRule{"tblmunicípios", "length(Códmunicípio) > 3 AND Códmunicípio NOT GLOB '*[^0-9]*'",
            "Códmunicípio deve ter só algarismos, quatro ou mais"},
    RowRule{"tblCNAEsRegimeDispensado", "CNAE GLOB '[0-9][0-9][0-9][0-9][0-9][0-9][0-9]'",
            "CNAE deve ter sete algarismos"},
};

// What no two rows of a table may have in common, as SQL; rows without the condition have no such key.
struct Key {
  std::string_view table;
  std::string_view columns;
  std::string_view condition;
};

constexpr std::array kKeys{
    Key{"tblTodosCFOPs", "CFOP, Conjunto", "1"},
    Key{"tblQuadroCFOPs", "[Grupo 15], Conjunto", "[Grupo 15] <> ''"},
    Key{"tblQuadroCFOPs", "[Grupo 26], Conjunto", "[Grupo 26] <> ''"},
    Key{"tblQuadroCFOPs", "[Grupo 37], Conjunto", "[Grupo 37] <> ''"},
    Key{"tblEstados", "Código", "1"},
    Key{"tblMunicípiosZFM_ALC", "CódMunicípio", "1"},
    Key{"tblQuadroOcorrências", "CódSubItem, OpPróprias <> 0", "1"},
    Key{"tblcódigosdipam", "código", "1"},
    Key{"tblmunicípios", "Códmunicípio", "1"},
    Key{"tblCNAEsRegimeDispensado", "CNAE", "1"},
};

// Collects the rows of one table that do not hold what must hold.
class RowCheck {
 public:
  RowCheck(const sqlite::Connection& database, const ReferenceTable& table, bool with_rowid)
      : database_(database), table_(table), rowid_(with_rowid ? "rowid" : "0") {}

  void Demand(std::string_view condition, std::string_view words) {
    Collect(rowid_, fmt::format("NOT ({})", condition), words);
  }
  void DemandUnique(const Key& key) {
    Collect(fmt::format("max({})", rowid_),
            fmt::format("{} GROUP BY {} HAVING count(*) > 1", key.condition, key.columns),
            "há outra linha com a mesma chave");
  }
  [[nodiscard]] std::vector<InvalidRow> Take() { return std::move(invalid_); }

 private:
  void Collect(std::string_view rowid, std::string_view condition, std::string_view words) {
    const std::string_view first = table_.columns.front().name;
    sqlite::Statement rows = database_.Prepare(
        fmt::format("SELECT {}, {} FROM {} WHERE {}", rowid, Quoted(first), Quoted(table_.name), condition));
    while (rows.Step())
      invalid_.push_back({rows.Integer(0), fmt::format("{} '{}'", first, rows.Text(1)), std::string(words)});
  }

  const sqlite::Connection& database_;
  const ReferenceTable& table_;
  std::string_view rowid_;
  std::vector<InvalidRow> invalid_;
};

}  // namespace

bool IsView(const sqlite::Connection& database, std::string_view name) {
  sqlite::Statement found =
      database.Prepare("SELECT 1 FROM sqlite_master WHERE type = 'view' AND name = ? COLLATE NOCASE");
  return found.Bind(1, name).Step();
}

// A table's name stands before the column's: a quoted name that is unknown would be a text.
void DemandTables(const sqlite::Connection& database) {
  for (const ReferenceTable& table : ReferenceTables()) {
    if (IsView(database, table.name)) {
      throw RuntimeError(erro::kTabelaNaoEncontrada,
                         fmt::format("'{}' é uma visão, e não uma tabela.", table.name));
    }
    std::string columns;
    for (const ReferenceColumn& column : table.columns)
      columns += fmt::format("{}{}.{}", columns.empty() ? "" : ", ", Quoted(table.name), Quoted(column.name));
    (void)database.Prepare(fmt::format("SELECT {} FROM {}", columns, Quoted(table.name)));
  }
}

std::string Quoted(std::string_view name) { return fmt::format("\"{}\"", name); }

std::vector<InvalidRow> InvalidRows(const sqlite::Connection& database, const ReferenceTable& table,
                                    bool with_rowid) {
  RowCheck check(database, table, with_rowid);
  for (const ReferenceColumn& column : table.columns) {
    check.Demand(fmt::format("typeof({}) = '{}'", Quoted(column.name), column.integer ? "integer" : "text"),
                 fmt::format("{} deve ser um {}", column.name, column.integer ? "número inteiro" : "texto"));
  }
  for (const RowRule& rule : kRowRules) {
    if (rule.table == table.name) check.Demand(rule.condition, rule.words);
  }
  for (const Key& key : kKeys) {
    if (key.table == table.name) check.DemandUnique(key);
  }
  return check.Take();
}

}  // namespace tremvik
