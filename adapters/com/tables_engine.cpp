#include "adapters/com/tables_engine.h"

#include <limits>

#include "adapters/com/win_files.h"
#include "adapters/sqlite/reference_image.h"

namespace tremvik::com {
namespace {

sqlite::Connection OpenImage(std::string_view path) {
  const auto bytes = BeginningOf(path, std::numeric_limits<std::size_t>::max());
  return AbrirImagem(bytes.value_or(std::string()), path);
}

}  // namespace

Database& TablesEngine::OpenDatabase(std::string_view path) {
  if (!chosen_) {
    const bool sqlite = BeginningOf(path, kSqliteMark.size()) == kSqliteMark;
    chosen_ = sqlite ? &sqlite_.emplace(OpenImage) : static_cast<ReferenceEngine*>(&dao_);
  }
  return chosen_->OpenDatabase(path);
}

void TablesEngine::EndRun() {
  chosen_ = nullptr;
  sqlite_.reset();
  dao_.EndRun();
}

}  // namespace tremvik::com
