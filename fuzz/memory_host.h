// A host that lives in memory: one input file, answers decided beforehand, everything observable written
// down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/local/component_folder.h"
#include "adapters/local/folder_lock.h"
#include "adapters/sqlite/reference_engine.h"
#include "host/host.h"

namespace tremvik::fuzz {

/// The default reference tables in a temporary folder, which goes with this object.
class References {
 public:
  References();
  [[nodiscard]] const std::string& path() const { return folder_.path(); }
  [[nodiscard]] ReferenceEngine& engine() { return *engine_; }
  /// Drops the answers that the engine remembers, which grow with every new question.
  void Forget() { engine_.emplace(folder_); }

 private:
  ScratchFolder scratch_;
  ComponentFolder folder_{scratch_.path()};
  std::optional<SqliteReferenceEngine> engine_;
};

/// One run's file and circumstances.
struct Input {
  std::string_view file;
  std::uint8_t answers = 0x7F;                 ///< bits 0 to 6: questions answered Yes, in turn; bit 7: the
                                               ///< declarations are already held
  std::size_t read_at_most = std::size_t(-1);  ///< bytes that one read gives
};

/// The path under which the input file is found; no other file exists.
inline constexpr std::string_view kInputPath = "entrada.txt";

/// Where a refusal said the fault is.
struct Place {
  int linha;
  std::string registro;
  std::string campo;
};

class MemoryHost final : public Screen,
                         public Events,
                         public Diagnostics,
                         public Files,
                         public Application,
                         public ComponentFactory {
 public:
  /// `references` and the input's file must outlive the host.
  MemoryHost(References& references, const Input& input) : references_(references), input_(input) {}
  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, references_.engine(), *this}; }

  /// Everything observable so far, one line of text each.
  [[nodiscard]] const std::string& trace() const { return trace_; }
  [[nodiscard]] int boxes() const { return boxes_; }        ///< message boxes without a question
  [[nodiscard]] int closings() const { return closings_; }  ///< events `Fechar`
  [[nodiscard]] int records() const { return records_; }    ///< records stored
  [[nodiscard]] int open_files() const { return open_files_; }
  [[nodiscard]] const std::string& last_title() const { return last_title_; }
  [[nodiscard]] const std::vector<Place>& places() const { return places_; }

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int pointer) override;
  void Progresso() override { Note({"Progresso"}); }
  void Fechar() override;
  void Inconsistencia(const FaultLocation& where) override;
  void Duvida(const FaultLocation& where) override;
  bool Exists(std::string_view /*path*/) override { return false; }
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override { Note({"Rename ", from, " ", to}); }
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;
  std::string AppPath() override { return references_.path(); }
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Gravavel registro) override;

 private:
  class Banco;
  class Consulta;
  class Writer;
  void Note(std::initializer_list<std::string_view> pieces);
  void Note(std::string_view what, const FaultLocation& where);

  References& references_;
  Input input_;
  std::string trace_;
  std::string last_title_;
  std::vector<Place> places_;
  std::vector<std::optional<std::size_t>> offsets_;  ///< by file number - 1; empty for closed ones
  int boxes_ = 0;
  int questions_ = 0;
  int closings_ = 0;
  int records_ = 0;
  int open_files_ = 0;
};

}  // namespace tremvik::fuzz
