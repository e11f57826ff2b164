#include "adapters/sqlite/store_schema.h"

#include <algorithm>
#include <array>

#include "host/runtime_error.h"

namespace tremvik {
namespace {

using enum Form;

constexpr std::array kDeclaracao{
    StoredColumn{"IE", "ie"},
    StoredColumn{"CNPJ", "cnpj"},
    StoredColumn{"CNAE", "cnae"},
    StoredColumn{"RegTrib", "regime"},
    StoredColumn{"Ref", "referencia", kPeriod},
    StoredColumn{"RefInicial", "referencia_inicial", kPeriod},
    StoredColumn{"Tipo", "tipo", kInteger},
    StoredColumn{"Movimento", "movimento", kInteger},
    StoredColumn{"Transmitida", "transmitida", kInteger},
    StoredColumn{"SaldoCredPeriodoAnt", "saldo_cred_periodo_ant", kValue},
    StoredColumn{"SaldoCredPeriodoAntST", "saldo_cred_periodo_ant_st", kValue},
    StoredColumn{"SemRegra", "sem_regra"},
    StoredColumn{"OrigemPreDig", "origem_pre_dig", kInteger},
    StoredColumn{"ICMSFixPer", "icms_fix_per", kValue},
    StoredColumn{"ChaveInterna", "chave_interna"},
    StoredColumn{"Q07", "q07", kInteger},
    StoredColumn{"Q10", "q10", kInteger},
    StoredColumn{"Q20", "q20", kInteger},
    StoredColumn{"Q30", "q30", kInteger},
    StoredColumn{"Q31", "q31", kInteger},
};
constexpr std::array kPagamento{
    StoredColumn{"PrópriaOuST", "propria_ou_st", kInteger},
    StoredColumn{"Valor", "valor", kValue},
    StoredColumn{"Data", "data", kDate},
};
constexpr std::array kCfop{
    StoredColumn{"CFOP", "cfop"},
    StoredColumn{"Descrição", "descricao"},
    StoredColumn{"ValorContábil", "valor_contabil", kValue},
    StoredColumn{"BaseCálculo", "base_calculo", kValue},
    StoredColumn{"Imposto", "imposto", kValue},
    StoredColumn{"IsentasNãoTrib", "isentas_nao_trib", kValue},
    StoredColumn{"Outras", "outras", kValue},
    StoredColumn{"ImpostoRetidoST", "imposto_retido_st", kValue},
    StoredColumn{"ImpRetSubstitutoST", "imp_ret_substituto_st", kValue},
    StoredColumn{"ImpRetSubstituÍdo", "imp_ret_substituido", kValue},
    StoredColumn{"OutrosImpostos", "outros_impostos", kValue},
};
constexpr std::array kRegistroCru{StoredColumn{"Registro", "registro"}};
constexpr std::array kOcorrencia{
    StoredColumn{"CódSubItem", "cod_sub_item"},
    StoredColumn{"Valor", "valor", kValue},
    StoredColumn{"PrópriaOuST", "propria_ou_st", kInteger},
    StoredColumn{"FLegal", "f_legal"},
    StoredColumn{"Ocorrência", "ocorrencia"},
    StoredColumn{"Q25", "q25", kInteger},
    StoredColumn{"Q26", "q26", kInteger},
    StoredColumn{"Q27", "q27", kInteger},
    StoredColumn{"Q28", "q28", kInteger},
};
constexpr std::array kOcorrenciaIE{
    StoredColumn{"CódSubItem", "cod_sub_item"},
    StoredColumn{"PrópriaOuST", "propria_ou_st", kInteger},
    StoredColumn{"IE", "ie"},
    StoredColumn{"Valor", "valor", kValue},
};
constexpr std::array kOcorrenciaSubstituto{
    StoredColumn{"CódSubItem", "cod_sub_item"},
    StoredColumn{"PrópriaOuST", "propria_ou_st", kInteger},
    StoredColumn{"IESubstituto", "ie_substituto"},
    StoredColumn{"NF", "nf", kInteger},
    StoredColumn{"DataInicio", "data_inicio", kMonth},
    StoredColumn{"DataFim", "data_fim", kMonth},
    StoredColumn{"Valor", "valor", kValue},
};
constexpr std::array kOcorrenciaSubstituido{
    StoredColumn{"CódSubItem", "cod_sub_item"},      StoredColumn{"PrópriaOuST", "propria_ou_st", kInteger},
    StoredColumn{"IESubstituído", "ie_substituido"}, StoredColumn{"NF", "nf", kInteger},
    StoredColumn{"Valor", "valor", kValue},
};
constexpr std::array kOcorrenciaAutorizacao{
    StoredColumn{"CódSubItem", "cod_sub_item"},
    StoredColumn{"PrópriaOuST", "propria_ou_st", kInteger},
    StoredColumn{"CodAutorizacao", "cod_autorizacao"},
    StoredColumn{"Valor", "valor", kValue},
};
constexpr std::array kExportacao{StoredColumn{"RE", "re"}};

constexpr std::array<RecordTable, kStoredKinds.size()> kTables{{
    {Kind::kCr05, "declaracao", {}, kDeclaracao},
    {Kind::kCr07, "pagamento", {}, kPagamento},
    {Kind::kCr10, "cfop", {}, kCfop},
    {Kind::kCr14, "interestadual", Kind::kCr10, kRegistroCru},
    {Kind::kCr18, "zona_franca", Kind::kCr14, kRegistroCru},
    {Kind::kCr20, "ocorrencia", {}, kOcorrencia},
    {Kind::kCr25, "ocorrencia_ie", Kind::kCr20, kOcorrenciaIE},
    {Kind::kCr26, "ocorrencia_substituto", Kind::kCr20, kOcorrenciaSubstituto},
    {Kind::kCr27, "ocorrencia_substituido", Kind::kCr20, kOcorrenciaSubstituido},
    {Kind::kCr28, "ocorrencia_autorizacao", Kind::kCr20, kOcorrenciaAutorizacao},
    {Kind::kCr30, "dipam", {}, kRegistroCru},
    {Kind::kCr31, "exportacao", {}, kExportacao},
}};

// The columns that the record's own fields fill, parted by commas; `types` adds their types.
std::string FieldColumns(const RecordTable& table, bool types) {
  std::string columns;
  for (const StoredColumn& column : table.columns) {
    columns.append(",\n  ").append(column.name);
    if (types) columns.append(column.form == kInteger ? " INTEGER" : " TEXT");
    if (column.form != kValue) continue;
    columns.append(", ").append(column.name).append("_centavos");
    if (types) columns.append(" INTEGER");
  }
  return columns;
}

bool IsHeader(const RecordTable& table) { return table.kind == Kind::kCr05; }

// The header's key, which the store numbers anew.
constexpr std::string_view kImportTable =
    "CREATE TABLE banco.importacao (\n"
    "  id INTEGER PRIMARY KEY,\n"
    "  arquivo TEXT NOT NULL,\n"
    "  importado_em TEXT NOT NULL,\n"
    "  declaracoes INTEGER NOT NULL,\n"
    "  registros INTEGER NOT NULL\n);\n";

std::string TableSql(const RecordTable& table) {
  std::string sql("CREATE TABLE banco.");
  sql.append(table.name).append(" (\n");
  if (IsHeader(table)) {
    sql.append("  id INTEGER PRIMARY KEY,\n  importacao_id INTEGER NOT NULL REFERENCES importacao(id),\n");
    sql.append("  linha INTEGER NOT NULL").append(FieldColumns(table, true));
    return sql.append(",\n  UNIQUE (ie, referencia)\n);\n");
  }
  sql.append("  declaracao_id INTEGER NOT NULL REFERENCES declaracao(id),\n  linha INTEGER NOT NULL");
  if (table.parent) sql.append(",\n  ").append(ParentColumn(table)).append(" INTEGER NOT NULL");
  sql.append(FieldColumns(table, true)).append(",\n  PRIMARY KEY (declaracao_id, linha)");
  if (table.parent) {
    sql.append(",\n  FOREIGN KEY (declaracao_id, ").append(ParentColumn(table)).append(") REFERENCES ");
    sql.append(TableOf(*table.parent).name).append("(declaracao_id, linha)");
  }
  return sql.append("\n) WITHOUT ROWID;\n");
}

}  // namespace

std::span<const RecordTable> RecordTables() { return kTables; }

const RecordTable& TableOf(Kind kind) {
  const auto* const table = std::ranges::find(kTables, kind, &RecordTable::kind);
  if (table == kTables.end()) throw RuntimeError(erro::kArgumentoInvalido);
  return *table;
}

int KeyColumns(const RecordTable& table) { return table.parent ? 3 : 2; }

std::string ParentColumn(const RecordTable& table) {
  return table.parent ? std::string(TableOf(*table.parent).name).append("_linha") : std::string();
}

std::string TemporarySchema() {
  std::string sql;
  for (const RecordTable& table : kTables) {
    sql.append("CREATE TABLE ").append(table.name).append(" (declaracao_id, linha INTEGER PRIMARY KEY");
    if (table.parent) sql.append(", ").append(ParentColumn(table));
    sql.append(FieldColumns(table, false)).append(");\n");
  }
  return sql;
}

std::string InsertionSql(const RecordTable& table) {
  std::string sql("INSERT INTO ");
  sql.append(table.name).append(" VALUES (?, ?").append(table.parent ? ", ?" : "");
  for (const StoredColumn& column : table.columns)
    sql.append(column.form == kValue ? ", ?, ?" : ", ?");
  return sql.append(")");
}

std::string StoreSchema() {
  std::string sql(kImportTable);
  for (const RecordTable& table : kTables)
    sql.append(TableSql(table));
  return sql;
}

std::string TransferSql(const RecordTable& table) {
  std::string sql("INSERT INTO banco.");
  sql.append(table.name).append(" SELECT declaracao_id + ?1");
  if (IsHeader(table)) sql.append(", ?2");
  sql.append(", linha");
  if (table.parent) sql.append(", ").append(ParentColumn(table));
  return sql.append(FieldColumns(table, false)).append(" FROM main.").append(table.name);
}

}  // namespace tremvik
