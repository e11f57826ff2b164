#include "adapters/sqlite/embedded_host.h"

#include <optional>

#include "adapters/local/folder_lock.h"
#include "adapters/local/local_application.h"
#include "adapters/local/local_files.h"
#include "adapters/local/replacement.h"
#include "adapters/local/system.h"
#include "adapters/local/temporary_names.h"
#include "adapters/sqlite/declaration_store.h"
#include "adapters/sqlite/reference_engine.h"
#include "adapters/sqlite/reference_tables.h"
#include "adapters/sqlite/sqlite_components.h"

namespace tremvik {
namespace {

constexpr std::string_view kTrava = "tremvik.lock";
std::string InUse(const std::string& folder) {
  return "A pasta '" + folder + "' está em uso por outra importação.";
}

}  // namespace

class EmbeddedHost::Impl {
 public:
  Impl(EmbeddedHostOptions&& options, Screen& screen, Events& events, Diagnostics& diagnostics)
      : folder_(options.pasta),
        files_(folder_),
        names_(folder_, files_),
        application_(folder_, std::move(options.config_home)),
        engine_([this](std::string_view path) {
          return built_in_tables_ ? TabelasPadrao() : AbrirTabelas(folder_.Resolve(path));
        }),
        store_(folder_.File(arquivo::kDeclaracoes)),
        host_{screen,
              events,
              diagnostics,
              FilesFor(options.modo),
              application_,
              engine_,
              Components(options.modo)} {}

  [[nodiscard]] Host host() const { return host_; }
  void AcompanharLinha(std::function<int()> linha) {
    if (temporary_) temporary_->AcompanharLinha(std::move(linha));
  }
  void Consolidar(const Outcome& outcome, std::string_view nome_do_arquivo) {
    if (outcome.estado != Outcome::Estado::kAceito) {
      throw RuntimeError(erro::kArgumentoInvalido, "O arquivo não foi aceito.");
    }
    if (!temporary_) return;
    sqlite::Connection* const run = temporary_->Ended();
    if (run == nullptr) throw RuntimeError(erro::kArgumentoInvalido, "Nenhuma importação terminou.");
    store_.Receive(*run, nome_do_arquivo);
    temporary_->Discard();
  }

 private:
  Files& FilesFor(Modo modo) { return modo == Modo::kImportar ? static_cast<Files&>(files_) : names_; }
  ComponentFactory& Components(Modo modo) { return modo == Modo::kImportar ? ToImport() : ToValidate(); }

  ComponentFactory& ToImport() {
    MakeFolder(folder_.path());
    lock_.emplace(folder_.File(kTrava), InUse(folder_.path()));
    const std::string tables = folder_.File(arquivo::kTabelasFixas);
    if (IsMissing(tables)) {
      ConstruirTabelasPadrao(tables);
    } else {
      RemoveAbandonedReplacements(tables);
    }
    store_.RemoveAbandonedJournals();
    temporary_.emplace(folder_);
    return components_.emplace<SqliteComponents>(*temporary_, store_);
  }

  // Where the folder cannot be written, the program's own rows serve from memory.
  ComponentFactory& ToValidate() {
    const std::string tables = folder_.File(arquivo::kTabelasFixas);
    if (IsMissing(tables)) {
      try {
        MakeFolder(folder_.path());
        ConstruirTabelasPadrao(tables);
      } catch (const RuntimeError&) {
        built_in_tables_ = true;
      }
    }
    return components_.emplace<DiscardingComponents>(names_, store_);
  }

  ComponentFolder folder_;
  std::optional<FolderLock> lock_;
  LocalFiles files_;
  TemporaryNames names_;
  LocalApplication application_;
  bool built_in_tables_ = false;
  SqliteReferenceEngine engine_;
  Store store_;
  std::optional<TemporaryDatabase> temporary_;
  std::variant<std::monostate, SqliteComponents, DiscardingComponents> components_;
  Host host_;
};

EmbeddedHost::EmbeddedHost(EmbeddedHostOptions options, Screen& screen, Events& events,
                           Diagnostics& diagnostics)
    : impl_(std::make_unique<Impl>(std::move(options), screen, events, diagnostics)) {}

EmbeddedHost::~EmbeddedHost() = default;

Host EmbeddedHost::host() { return impl_->host(); }

void EmbeddedHost::AcompanharLinha(std::function<int()> linha) { impl_->AcompanharLinha(std::move(linha)); }

void EmbeddedHost::Consolidar(const Outcome& outcome, std::string_view nome_do_arquivo) {
  impl_->Consolidar(outcome, nome_do_arquivo);
}

}  // namespace tremvik
