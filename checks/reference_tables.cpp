#include "checks/reference_tables.h"

#include <algorithm>
#include <array>

namespace tremvik {
namespace {

struct Tabela {
  Kind kind;
  std::string_view table;
  std::string_view key;
  std::string_view extra;
};

// Names differ in case and accent from table to table; so does the database.
constexpr Tabela kMunicipios{Kind::kCr30, "tblmunicípios", "Códmunicípio", ""};
constexpr std::array kTabelas{
    Tabela{Kind::kCr05, "tblCNAEsRegimeDispensado", "CNAE", ""},
    Tabela{Kind::kCr10, "tblTodosCFOPs", "CFOP", "Conjunto"},
    Tabela{Kind::kCr14, "tblEstados", "Código", ""},
    Tabela{Kind::kCr18, "tblMunicípiosZFM_ALC", "CódMunicípio", ""},
    Tabela{Kind::kCr20, "tblQuadroOcorrências", "CódSubItem", "OpPróprias"},
    Tabela{Kind::kCr30, "tblcódigosdipam", "código", ""},
};

// A kind without a table: its query is invalid and the engine says so.
Tabela Escolher(Kind kind, std::string_view value) {
  if (kind == Kind::kCr30 && value.size() > 3) return kMunicipios;
  const auto tabela = std::ranges::find(kTabelas, kind, &Tabela::kind);
  return tabela == kTabelas.end() ? Tabela{} : *tabela;
}

void Compor(std::string& sql, std::initializer_list<std::string_view> pieces) {
  sql.clear();
  for (const std::string_view piece : pieces)
    sql += piece;
}

// Closes an engine's object at the end of its block, the error of the block coming before that of the
// closing.
template <typename T>
class Closer {
 public:
  explicit Closer(T& object) : object_(&object) {}
  Closer(const Closer&) = delete;
  Closer& operator=(const Closer&) = delete;
  ~Closer() {
    if (object_ == nullptr) return;
    try {
      object_->Close();
    } catch (...) {  // NOLINT(bugprone-empty-catch): see above
    }
  }

  T& operator*() const { return *object_; }
  T* operator->() const { return object_; }
  void Close() {
    T* const object = object_;
    object_ = nullptr;
    object->Close();
  }

 private:
  T* object_;
};

}  // namespace

Database& TabelasFixas::Abrir() {
  if (caminho_.empty()) caminho_ = application_.AppPath() + "\\tblFixas.fix";
  return engine_.OpenDatabase(caminho_);
}

bool TabelasFixas::NaoExisteEmFixas(Kind kind, std::string_view value, std::string_view mode) {
  const Tabela tabela = Escolher(kind, value);
  const std::string_view t = tabela.table;
  const std::string_view k = tabela.key;
  const std::string_view x = tabela.extra;
  if (mode.empty()) {
    Compor(sql_, {"Select ", k, " From ", t, " Where ", k, " = '", value, "'"});
  } else if (mode == "0") {
    Compor(sql_, {"Select ", k, " From ", t, " Where ", k, " = '", value, "' and ", x});
  } else if (kind != Kind::kCr10) {
    Compor(sql_, {"Select ", k, " From ", t, " Where ", k, " = '", value, "' and NOT ", x});
  } else if (mode > "2") {
    Compor(sql_,
           {"SELECT ", k, " FROM ", t, " WHERE ", k, " = '", value, "' and ", x, " > '1' AND GRUPO = 0"});
  } else {
    Compor(sql_, {"SELECT ", k, " FROM ", t, " WHERE ", k, " = '", value, "' and ", x, " = '", mode,
                  "' AND GRUPO = 0"});
  }
  Closer database(Abrir());
  Closer rows(database->OpenRecordset(sql_, kSnapshot));
  const bool nao_existe = rows->RecordCount() == 0;
  rows.Close();
  database.Close();
  return nao_existe;
}

std::string_view TabelasFixas::PrimeiroTexto(std::initializer_list<std::string_view> pieces,
                                             std::string_view column) {
  Compor(sql_, pieces);
  Closer database(Abrir());
  Closer rows(database->OpenRecordset(sql_, kSnapshot));
  texto_.clear();
  if (rows->RecordCount() > 0) texto_ = rows->Field(column);
  rows.Close();
  database.Close();
  return texto_;
}

}  // namespace tremvik
