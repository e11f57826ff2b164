#include "adapters/memory/memory_engine.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <utility>

#include "adapters/local/remembered.h"
#include "adapters/memory/sql.h"
#include "adapters/tables/embedded_tables.h"
#include "adapters/tables/reference_columns.h"
#include "host/runtime_error.h"
#include "text/csv_reader.h"

namespace tremvik {
namespace {

constexpr int kItemNotFound = 3265;

memory::Cell CellOf(std::string&& text, bool integer) {
  if (!integer) return std::move(text);
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

memory::Table Load(const ReferenceTable& table) {
  memory::Table loaded{.name = table.name, .columns = {}, .rows = {}};
  const auto files = EmbeddedFiles();
  text::CsvReader reader(std::ranges::find(files, table.file, &EmbeddedFile::name)->text);
  std::vector<std::string> fields;
  reader.Next(fields);
  std::vector<bool> integers;
  for (const auto& name : fields) {
    const auto column = std::ranges::find(table.columns, name, &ReferenceColumn::name);
    loaded.columns.push_back(column->name);
    integers.push_back(column->integer);
  }
  while (reader.Next(fields)) {
    std::vector<memory::Cell>& row = loaded.rows.emplace_back();
    for (std::size_t i = 0; i < integers.size(); ++i)
      row.push_back(CellOf(std::move(fields[i]), integers[i]));
  }
  return loaded;
}

std::vector<memory::Table> LoadAll() {
  std::vector<memory::Table> tables;
  for (const ReferenceTable& table : ReferenceTables())
    tables.push_back(Load(table));
  return tables;
}

// The first row of an answer, which is all that look-ups read.
class Answer final : public Recordset {
 public:
  explicit Answer(const memory::Query& query) : name_(query.table->columns[query.column]) {
    const auto& rows = query.table->rows;
    const auto row =
        std::ranges::find_if(rows, [&query](const auto& one) { return query.where->Holds(one); });
    if (row == rows.end()) return;
    const memory::Cell& cell = (*row)[query.column];
    const auto* const text = std::get_if<std::string>(&cell);
    text_ = text != nullptr ? *text : std::to_string(std::get<std::int64_t>(cell));
  }
  virtual ~Answer() = default;

  long RecordCount() override { return text_ ? 1 : 0; }
  std::string_view Field(std::string_view name) override {
    if (!text_ || name != name_) throw RuntimeError(kItemNotFound, "Item não encontrado nesta coleção.");
    return *text_;
  }
  void Close() override {}

 private:
  std::string_view name_;
  std::optional<std::string> text_;
};

}  // namespace

class MemoryReferenceEngine::Impl final : public Database {
 public:
  virtual ~Impl() = default;

  Recordset& OpenRecordset(std::string_view sql, int type) override {
    if (type != kSnapshot) throw RuntimeError(erro::kArgumentoInvalido);
    return answers_.To(sql, [&] { return Answer(memory::ParseQuery(sql, tables_)); });
  }
  void Close() override {}

 private:
  std::vector<memory::Table> tables_ = LoadAll();
  Remembered<Answer> answers_;
};

MemoryReferenceEngine::MemoryReferenceEngine() : impl_(std::make_unique<Impl>()) {}
MemoryReferenceEngine::~MemoryReferenceEngine() = default;

Database& MemoryReferenceEngine::OpenDatabase(std::string_view /*path*/) { return *impl_; }

}  // namespace tremvik
