#include "adapters/sqlite/reference_engine.h"

#include <string>
#include <utility>
#include <vector>

#include "adapters/local/remembered.h"
#include "adapters/sqlite/connection.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

constexpr std::size_t kMostQueries = 64;

// A query text with a parameter in the place of each text value, and the values.
struct Shape {
  std::string sql;
  std::vector<std::string_view> values;
};

// A text whose values cannot be told (an odd number of quotes) keeps them.
Shape Parametrize(std::string_view sql) {
  Shape shape;
  std::string_view rest = sql;
  while (true) {
    const auto open = rest.find('\'');
    shape.sql += rest.substr(0, open);
    if (open == std::string_view::npos) return shape;
    const auto close = rest.find('\'', open + 1);
    if (close == std::string_view::npos || rest.substr(close + 1).starts_with('\''))
      return {std::string(sql), {}};
    shape.sql += '?';
    shape.values.push_back(rest.substr(open + 1, close - open - 1));
    rest.remove_prefix(close + 1);
  }
}

// The first row of an answer, which is all that look-ups read.
class Answer final : public Recordset {
 public:
  explicit Answer(sqlite::Statement& query) {
    found_ = query.Step();
    for (int column = 0; found_ && column < query.Columns(); ++column) {
      fields_.emplace_back(query.Name(column), query.Text(column));
    }
    query.Reset();
  }

  virtual ~Answer() = default;

  long RecordCount() override { return found_ ? 1 : 0; }
  std::string_view Field(std::string_view name) override {
    if (!found_) throw RuntimeError(sqlite::kNoCurrentRecord, "Nenhum registro atual.");
    for (const auto& [field, text] : fields_) {
      if (field == name) return text;
    }
    throw RuntimeError(sqlite::kItemNotFound, "Item não encontrado nesta coleção.");
  }
  void Close() override {}

 private:
  bool found_ = false;
  std::vector<std::pair<std::string, std::string>> fields_;
};

class ReferenceDatabase final : public Database {
 public:
  explicit ReferenceDatabase(sqlite::Connection connection) : connection_(std::move(connection)) {}

  virtual ~ReferenceDatabase() = default;

  Recordset& OpenRecordset(std::string_view sql, int type) override {
    if (type != kSnapshot) throw RuntimeError(erro::kArgumentoInvalido);
    return answers_.To(sql, [&] { return Answer(Query(sql)); });
  }
  void Close() override {}

 private:
  // Compiling a query costs far more than running it, and there are few that differ in more than values.
  sqlite::Statement& Query(std::string_view sql) {
    Shape shape = Parametrize(sql);
    auto known = queries_.find(shape.sql);
    if (known == queries_.end()) {
      if (queries_.size() == kMostQueries) queries_.clear();
      known = queries_.try_emplace(shape.sql, connection_.Prepare(shape.sql)).first;
    }
    int parameter = 0;
    for (const std::string_view value : shape.values)
      known->second.Bind(++parameter, value);
    return known->second;
  }

  sqlite::Connection connection_;
  TextMap<sqlite::Statement> queries_;
  Remembered<Answer> answers_;
};

}  // namespace

class SqliteReferenceEngine::Impl {
 public:
  explicit Impl(Opening open) : open_(std::move(open)) {}

  // An instance asks for one path; were there another, its database would take the place of the first.
  Database& Open(std::string_view path) {
    if (database_ && path == path_) return *database_;
    database_ = std::make_unique<ReferenceDatabase>(open_(path));
    path_ = path;
    return *database_;
  }

 private:
  Opening open_;
  std::string path_;
  std::unique_ptr<ReferenceDatabase> database_;
};

SqliteReferenceEngine::SqliteReferenceEngine(Opening open) : impl_(std::make_unique<Impl>(std::move(open))) {}

SqliteReferenceEngine::~SqliteReferenceEngine() = default;

Database& SqliteReferenceEngine::OpenDatabase(std::string_view path) { return impl_->Open(path); }

}  // namespace tremvik
