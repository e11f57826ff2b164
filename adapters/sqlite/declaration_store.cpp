#include "adapters/sqlite/declaration_store.h"

#include "adapters/local/component_folder.h"
#include "adapters/sqlite/store.h"
#include "adapters/sqlite/store_schema.h"
#include "runtime/numbers.h"

namespace tremvik {
namespace {

Celula Cell(const sqlite::Statement& row, int column) {
  switch (row.Type(column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return row.Integer(column);
    default:
      return std::string(row.Text(column));
  }
}

std::string OneDeclaration(const RecordTable& table) {
  std::string sql("SELECT * FROM ");
  sql.append(table.name).append(table.kind == Kind::kCr05 ? " WHERE id" : " WHERE declaracao_id");
  return sql.append(" = ? ORDER BY linha");
}

// The keys by which tables are joined say nothing about the declaration.
bool IsKey(std::string_view column) {
  return column == "id" || column == "declaracao_id" || column == "importacao_id";
}

TabelaGuardada ReadTable(sqlite::Connection& store, const RecordTable& table, std::int64_t id) {
  sqlite::Statement row = store.Prepare(OneDeclaration(table));
  row.Bind(1, id);
  TabelaGuardada read{table.kind, std::string(table.name), {}, {}};
  std::vector<int> columns;
  for (int column = 0; column < row.Columns(); ++column) {
    if (IsKey(row.Name(column))) continue;
    columns.push_back(column);
    read.colunas.emplace_back(row.Name(column));
  }
  while (row.Step()) {
    auto& cells = read.linhas.emplace_back();
    for (const int column : columns)
      cells.push_back(Cell(row, column));
  }
  return read;
}

}  // namespace

std::string NormalizarIE(std::string_view ie) {
  std::string digits(ie);
  if (ie.size() == 15 && ie[3] == '.' && ie[7] == '.' && ie[11] == '.') std::erase(digits, '.');
  if (digits.size() != 12 || !OnlyDigits(digits)) return {};
  for (const std::size_t at : {9U, 6U, 3U})
    digits.insert(at, 1, '.');
  return digits;
}

std::string NormalizarReferencia(std::string_view referencia) {
  std::string_view year = referencia.substr(0, 4);
  std::string_view month;
  if (referencia.size() == 6) month = referencia.substr(4);
  if (referencia.size() == 7 && referencia[4] == '-') month = referencia.substr(5);
  if (referencia.size() == 7 && referencia[2] == '/') {
    month = referencia.substr(0, 2);
    year = referencia.substr(3);
  }
  if (!OnlyDigits(year) || !OnlyDigits(month) || month < "01" || month > "12") return {};
  return std::string(year).append("-").append(month);
}

class DeclarationStore::Impl {
 public:
  explicit Impl(std::string_view folder) : store_(ComponentFolder(folder).File(arquivo::kDeclaracoes)) {}

  std::vector<DeclaracaoGuardada> Listar() {
    std::vector<DeclaracaoGuardada> held;
    sqlite::Connection* const store = store_.Abrir();
    if (store == nullptr) return held;
    std::string sql(
        "SELECT ie, cnpj, regime, referencia, coalesce(referencia_inicial, ''), importado_em, arquivo");
    for (const auto& table : RecordTables().subspan(1)) {
      sql.append(", (SELECT count(*) FROM ").append(table.name).append(" WHERE declaracao_id = d.id)");
    }
    sql.append(" FROM declaracao d JOIN importacao i ON i.id = d.importacao_id ORDER BY ie, referencia");
    for (sqlite::Statement row = store->Prepare(sql); row.Step();) {
      held.push_back({std::string(row.Text(0)),
                      std::string(row.Text(1)),
                      std::string(row.Text(2)),
                      std::string(row.Text(3)),
                      std::string(row.Text(4)),
                      std::string(row.Text(5)),
                      std::string(row.Text(6)),
                      {1}});
      for (std::size_t kind = 1; kind < kStoredKinds.size(); ++kind) {
        held.back().registros.at(kind) = static_cast<int>(row.Integer(static_cast<int>(kind) + 6));
      }
    }
    return held;
  }

  std::vector<TabelaGuardada> Registros(std::string_view ie, std::string_view referencia) {
    std::vector<TabelaGuardada> tables;
    sqlite::Connection* const store = store_.Abrir();
    if (store == nullptr) return tables;
    auto key = store->Prepare("SELECT id FROM declaracao WHERE ie = ? AND referencia = ?");
    if (!key.Bind(1, ie).Bind(2, referencia).Step()) return tables;
    for (const auto& table : RecordTables()) {
      auto read = ReadTable(*store, table, key.Integer(0));
      if (!read.linhas.empty()) tables.push_back(std::move(read));
    }
    return tables;
  }

 private:
  Store store_;
};

DeclarationStore::DeclarationStore(std::string_view pasta) : impl_(std::make_unique<Impl>(pasta)) {}

DeclarationStore::~DeclarationStore() = default;

std::vector<DeclaracaoGuardada> DeclarationStore::Listar() { return impl_->Listar(); }

std::vector<TabelaGuardada> DeclarationStore::Registros(std::string_view ie, std::string_view referencia) {
  return impl_->Registros(ie, referencia);
}

}  // namespace tremvik
