// A host that lives in memory: files, answers set beforehand, everything observable kept in order.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "host/host.h"
#include "host/runtime_error.h"

namespace tremvik::test {

/// A message box that was shown.
struct Box {
  std::string text;
  int style = 0;
  std::string title;
  friend bool operator==(const Box&, const Box&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Box& box) {
    return out << "[" << box.title << " " << box.style << "] " << box.text;
  }
};

/// The true place of a fault or doubt, as told before its box.
struct Place {
  int line = 0;
  std::string record, field;
  int position = 0, width = 0;
  std::string value, porque = {};
  friend bool operator==(const Place&, const Place&) = default;
};

/// Where tests put the file to import.
inline constexpr std::string_view kInputPath = "entrada.txt";

class MemoryHost : public Screen,
                   public Events,
                   public Diagnostics,
                   public Files,
                   public Application,
                   public ReferenceEngine,
                   public ComponentFactory {
 public:
  /// Documents that are not valid, a declaration that the host holds (dotted form) and the keys, as they
  /// stand in a query, that no reference table has. Everything else is valid, new and known.
  static constexpr std::string_view kInvalidIE = "999999999999", kInvalidCNPJ = "99999999999999",
                                    kHeldIE = "110.042.490.177";
  static constexpr std::string_view kUnknownKeys[] = {"'9.999'", "'9.99.9'", "'999.98'"};

  /// The host's empty temporary database lies in `folder`, the component's.
  explicit MemoryHost(std::string_view folder = "C:\\App");
  ~MemoryHost() override;
  MemoryHost(const MemoryHost&) = delete;
  MemoryHost& operator=(const MemoryHost&) = delete;
  /// The host to create the component with.
  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, *this, *this}; }

  /// Makes the call `operation` fail with run-time error `number`, after `good` calls that do not: the name
  /// of a method of the host's interfaces. Number 0 stands for an exception that is no run-time error.
  void Fail(std::string_view operation, int number, int good = 0) {
    failures_[std::string(operation)] = {number, good};
  }

  // Set beforehand.
  std::map<std::string, std::string, std::less<>> files;  ///< contents by path
  std::string third_opening;         ///< what each third opening reads instead: the one of the binary run
  std::size_t most_read = SIZE_MAX;  ///< bytes that one read delivers
  std::vector<int> answers;          ///< to the questions, in turn, over and over
  bool holds_all = false;            ///< every declaration is held already
  bool keeps_log = true;

  // Seen.
  std::vector<std::string> log;  ///< everything in order, one line each
  std::vector<Box> boxes;
  std::vector<Place> places, doubts;
  std::vector<std::string> queries;
  std::map<std::string, int, std::less<>> written;  ///< records stored, by code
  int open_databases = 0;                           ///< databases and recordsets not closed
  [[nodiscard]] std::size_t open_files() const { return open_.size(); }

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int pointer) override { Note("Ponteiro ", std::to_string(pointer)); }
  void Progresso() override;
  void Fechar() override { Note("Fechar"); }
  void Inconsistencia(const FaultLocation& where) override;
  void Duvida(const FaultLocation& where) override;
  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;
  std::string AppPath() override { return folder_; }
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  std::string CaminhoBaseTemp() override { return caminho_base_temp_; }
  void GuardarCaminhoBaseTemp(std::string_view caminho) override { caminho_base_temp_ = caminho; }
  Database& OpenDatabase(std::string_view path) override;
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Kind registro) override;

 private:
  struct Failure {
    int number, good;
  };
  struct Banco;
  struct Consulta;
  struct Documentos;
  struct Writer;
  struct Tables;

  // The step `operation` begins: raises what `Fail` asked for.
  void Step(std::string_view operation);
  template <typename... Piece>
  void Note(const Piece&... pieces) {
    if (!keeps_log) return;
    std::string& line = log.emplace_back();
    (line.append(pieces), ...);
  }

  std::string folder_, caminho_base_temp_;
  std::map<std::string, Failure, std::less<>> failures_;
  std::map<int, std::string_view> open_;  // what is left to read, by number
  int openings_ = 0;
  std::size_t questions_ = 0;
  std::unique_ptr<Tables> tables_;
};

}  // namespace tremvik::test
