// A host made for tests: files in memory, answers set beforehand, everything observable kept in order.
#pragma once

#include <cstdint>
#include <map>
#include <set>
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
};

/// The true place of a fault, as told before its box.
struct Place {
  int line = 0;
  std::string record, field;
  int position = 0, width = 0;
  std::string value;
};

class RecordingHost final : public Screen,
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

  RecordingHost() { files["C:\\App\\BDTemp.mdb"] = ""; }
  /// The host to create the component with.
  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, *this, *this}; }

  /// Makes the call `operation` fail with run-time error `number`, after `good` calls that do not: the name
  /// of a method of the host's interfaces. Number 0 stands for an exception that is no run-time error.
  void Fail(std::string_view operation, int number, int good = 0) {
    failures_[std::string(operation)] = {number, good};
  }
  /// The step `operation` begins: raises what `Fail` asked for.
  void Step(std::string_view operation);

  // Set beforehand.
  std::map<std::string, std::string, std::less<>> files;  ///< contents by path
  std::string third_opening;         ///< what each third opening reads instead: the one of the binary run
  std::size_t most_read = SIZE_MAX;  ///< bytes that one read delivers
  std::vector<int> answers;          ///< to the first boxes; the others are answered OK

  // Seen.
  std::vector<std::string> log;  ///< everything in order, one line each
  std::vector<Box> boxes;
  std::vector<Place> places;
  std::vector<std::string> queries;
  int open_databases = 0;  ///< databases and recordsets not closed
  [[nodiscard]] std::size_t open_files() const { return open_.size(); }

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int pointer) override;
  void Progresso() override;
  void Fechar() override;
  void Inconsistencia(const FaultLocation& where) override;
  void Duvida(const FaultLocation& where) override;
  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;
  std::string AppPath() override { return "C:\\App"; }
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  Database& OpenDatabase(std::string_view path) override;
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Gravavel registro) override;

 private:
  struct Failure {
    int number = 0;
    int good = 0;
  };
  struct Opened {
    std::string_view rest;
  };
  struct Rows final : Recordset {
    explicit Rows(RecordingHost& of) : host(of) {}
    long RecordCount() override { return count; }
    std::string_view Field(std::string_view name) override;
    void Close() override { --host.open_databases; }
    RecordingHost& host;
    long count = 0;
  };
  struct Tables final : Database {
    explicit Tables(RecordingHost& of) : host(of) {}
    Recordset& OpenRecordset(std::string_view sql, int type) override;
    void Close() override { --host.open_databases; }
    RecordingHost& host;
  };

  std::map<std::string, Failure, std::less<>> failures_;
  std::map<int, Opened> open_;
  int openings_ = 0;
  Rows rows_{*this};
  Tables tables_{*this};
};

}  // namespace tremvik::test
