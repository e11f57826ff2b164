// A run as JSON lines: one object for each thing that happens, in order.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "adapters/trace/trace_sink.h"
#include "cli/environment.h"
#include "cli/fault_report.h"
#include "cli/terminal.h"

namespace tremvik::cli {

/// Follows one run: counts its declarations.
class RunTrace : public TraceSink {
 public:
  void Consulta(const TracedQuery& /*pergunta*/) override { ++declaracoes_; }

  [[nodiscard]] int declaracoes() const { return declaracoes_; }

 private:
  int declaracoes_ = 0;
};

/// Writes the objects of docs/json.md.
class JsonLines final : public RunTrace {
 public:
  /// `path` is the file's name in each object. `out` must outlive this object.
  JsonLines(Output& out, const std::string& path);

  void Mensagem(const TracedMessage& mensagem) override;
  void Evento(std::string_view nome) override;
  void Ponteiro(int valor) override;
  void Banco(std::string_view operacao, std::string_view caminho) override;
  void Consulta(const TracedQuery& pergunta) override;
  void Gravacao(Kind registro, std::span<const TracedField> campos) override;
  void Inconsistencia(const FaultLocation& where) override { WriteFault(Fault(where)); }
  void Duvida(const FaultLocation& where) override { question_.emplace(where); }
  /// The last object of the file.
  void Fim(ExitStatus status, int linha, std::string_view mensagem);

 private:
  class Line;
  void WriteFault(const Fault& fault);

  Output& out_;
  std::string path_;
  std::string arquivo_;            ///< `path_` as JSON
  std::optional<Fault> question_;  ///< a refusal's place if the question at hand is answered No
};

}  // namespace tremvik::cli
