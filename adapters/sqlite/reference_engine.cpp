#include "adapters/sqlite/reference_engine.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "adapters/local/local_files.h"
#include "adapters/sqlite/connection.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

// Looks a text up without making a string of it. Look-ups of one kind differ in their values, and these stand
// towards the end.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const {
    constexpr std::size_t kEnd = 48;
    const auto end = text.substr(text.size() - std::min(text.size(), kEnd));
    return std::hash<std::string_view>()(end) ^ text.size();
  }
};
template <typename V>
using TextMap = std::unordered_map<std::string, V, TextHash, std::equal_to<>>;

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
    if (!found_) throw RuntimeError(sqlite::kSemRegistroAtual, "Nenhum registro atual.");
    for (const auto& [field, text] : fields_) {
      if (field == name) return text;
    }
    throw RuntimeError(sqlite::kItemNaoEncontrado, "Item não encontrado nesta coleção.");
  }
  void Close() override {}

 private:
  bool found_ = false;
  std::vector<std::pair<std::string, std::string>> fields_;
};

class ReferenceDatabase final : public Database {
 public:
  explicit ReferenceDatabase(const std::string& file) {
    struct stat found {};
    if (::stat(file.c_str(), &found) != 0 && errno == ENOENT) {
      throw RuntimeError(erro::kBancoNaoEncontrado, "Não foi possível localizar o arquivo '" + file + "'.");
    }
    if (S_ISDIR(found.st_mode)) throw RuntimeError(erro::kAcessoAoCaminho);
    connection_ = sqlite::Connection(file, SQLITE_OPEN_READONLY);
    connection_.Execute("BEGIN");  // one lock for all queries, and answers from one state of the database
    // An empty file is a database without tables to SQLite, but none of ours.
    if (connection_.Number("PRAGMA schema_version") == 0) {
      throw sqlite::EngineError(connection_.get(), SQLITE_NOTADB);
    }
  }

  virtual ~ReferenceDatabase() = default;

  Recordset& OpenRecordset(std::string_view sql, int type) override {
    if (type != kSnapshot) throw RuntimeError(erro::kArgumentoInvalido);
    const auto known = answers_.find(sql);
    if (known != answers_.end()) return known->second;
    return answers_.try_emplace(std::string(sql), Query(sql)).first->second;
  }
  void Close() override {}

 private:
  // Compiling a query costs far more than running it, and there are few that differ in more than values.
  sqlite::Statement& Query(std::string_view sql) {
    Shape shape = Parametrize(sql);
    auto known = queries_.find(shape.sql);
    if (known == queries_.end())
      known = queries_.try_emplace(shape.sql, connection_.Prepare(shape.sql)).first;
    int parameter = 0;
    for (const std::string_view value : shape.values)
      known->second.Bind(++parameter, value);
    return known->second;
  }

  sqlite::Connection connection_;
  TextMap<sqlite::Statement> queries_;
  TextMap<Answer> answers_;
};

}  // namespace

class SqliteReferenceEngine::Impl {
 public:
  explicit Impl(const ComponentFolder& folder) : folder_(folder) {}

  // An instance asks for one path; were there another, its database would take the place of the first.
  Database& Open(std::string_view path) {
    if (database_ && path == path_) return *database_;
    database_ = std::make_unique<ReferenceDatabase>(folder_.Resolve(path));
    path_ = path;
    return *database_;
  }

 private:
  const ComponentFolder& folder_;
  std::string path_;
  std::unique_ptr<ReferenceDatabase> database_;
};

SqliteReferenceEngine::SqliteReferenceEngine(const ComponentFolder& folder)
    : impl_(std::make_unique<Impl>(folder)) {}

SqliteReferenceEngine::~SqliteReferenceEngine() = default;

Database& SqliteReferenceEngine::OpenDatabase(std::string_view path) { return impl_->Open(path); }

}  // namespace tremvik
