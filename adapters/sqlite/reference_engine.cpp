#include "adapters/sqlite/reference_engine.h"

#include <sys/stat.h>

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

// Looks a text up without making a string of it.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
template <typename V>
using TextMap = std::unordered_map<std::string, V, TextHash, std::equal_to<>>;

// The first row of an answer, which is all that look-ups read.
class Answer final : public Recordset {
 public:
  explicit Answer(sqlite::Statement query) {
    found_ = query.Step();
    for (int column = 0; found_ && column < query.Columns(); ++column) {
      fields_.emplace_back(query.Name(column), query.Text(column));
    }
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
    return answers_.try_emplace(std::string(sql), connection_.Prepare(sql)).first->second;
  }
  void Close() override {}

 private:
  sqlite::Connection connection_;
  TextMap<Answer> answers_;
};

}  // namespace

class SqliteReferenceEngine::Impl {
 public:
  explicit Impl(const ComponentFolder& folder) : folder_(folder) {}

  Database& Open(std::string_view path) {
    const auto known = databases_.find(path);
    if (known != databases_.end()) return *known->second;
    auto opened = std::make_unique<ReferenceDatabase>(folder_.Resolve(path));
    return *databases_.try_emplace(std::string(path), std::move(opened)).first->second;
  }

 private:
  const ComponentFolder& folder_;
  TextMap<std::unique_ptr<ReferenceDatabase>> databases_;
};

SqliteReferenceEngine::SqliteReferenceEngine(const ComponentFolder& folder)
    : impl_(std::make_unique<Impl>(folder)) {}

SqliteReferenceEngine::~SqliteReferenceEngine() = default;

Database& SqliteReferenceEngine::OpenDatabase(std::string_view path) { return impl_->Open(path); }

}  // namespace tremvik
