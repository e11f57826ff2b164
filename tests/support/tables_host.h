// A host in memory with the default reference tables and true check digits.
#pragma once

#include <string>
#include <string_view>

#include "adapters/local/component_folder.h"
#include "adapters/local/documents.h"
#include "adapters/sqlite/reference_engine.h"
#include "adapters/sqlite/reference_tables.h"
#include "tests/support/files.h"
#include "tests/support/memory_host.h"

namespace tremvik::test {

/// The default reference tables in a temporary folder, which goes with this object.
class References {
 public:
  References() { ConstruirTabelasPadrao(folder_.File(arquivo::kTabelasFixas)); }
  [[nodiscard]] const std::string& path() const { return folder_.path(); }
  [[nodiscard]] ReferenceEngine& engine() { return engine_; }

 private:
  ScratchFolder scratch_;
  ComponentFolder folder_{scratch_.path()};
  SqliteReferenceEngine engine_{
      [this](std::string_view path) { return AbrirTabelas(folder_.Resolve(path)); }};
};

class TablesHost : public MemoryHost {
 public:
  /// `file` lies at `kInputPath`. `references` must outlive the host.
  TablesHost(References& references, std::string_view file)
      : MemoryHost(references.path()), references_(references) {
    files[std::string(kInputPath)] = file;
  }
  Database& OpenDatabase(std::string_view path) override { return references_.engine().OpenDatabase(path); }
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override {
    return std::make_unique<ValidadorDocumentosLocal>();
  }

 private:
  References& references_;
};

}  // namespace tremvik::test
