// What can be seen of a run from outside, in the order in which it happens.
#pragma once

#include <span>
#include <string_view>

#include "host/diagnostics.h"
#include "host/record_kind.h"

namespace tremvik {

/// A message box, told after it was answered.
struct TracedMessage {
  std::string_view texto;   ///< UTF-8, lines parted by CR LF
  int estilo = 0;           ///< `estilo` bits
  std::string_view titulo;  ///< UTF-8
  int resposta = 0;         ///< a `resposta` value
};

/// A question to `ConsultaDeclaracoes`, told after it was answered.
struct TracedQuery {
  std::string_view ie;  ///< dotted form
  std::string_view uf;
  std::string_view regime;
  std::string_view referencia;          ///< "20/MM/AAAA"
  std::string_view referencia_inicial;  ///< likewise, or empty
  bool existe = false;
};

/// One field of a record handed to its writer.
struct TracedField {
  std::string_view nome;
  std::string_view texto;  ///< display form, UTF-8
};

/// Receives everything observable of a run. All views are valid during the call only. What a sink does not
/// care about it leaves as it is. A sink may throw a `RuntimeError`: the component sees it as the failure of
/// the call being reported.
struct TraceSink {
  virtual ~TraceSink() = default;
  virtual void Mensagem(const TracedMessage&) {}
  /// "Progresso" or "Fechar", before the listener hears of it.
  virtual void Evento(std::string_view /*nome*/) {}
  /// A `ponteiro` value, before it is set.
  virtual void Ponteiro(int /*valor*/) {}
  /// "Preparar", "Abrir" or "Encerrar", before it is done; `caminho` is empty for "Preparar".
  virtual void Banco(std::string_view /*operacao*/, std::string_view /*caminho*/) {}
  virtual void Consulta(const TracedQuery&) {}
  /// A record of that kind, all its fields in the order given, before its writer stores it.
  virtual void Gravacao(Kind /*registro*/, std::span<const TracedField> /*campos*/) {}
  virtual void Inconsistencia(const FaultLocation&) {}
  virtual void Duvida(const FaultLocation&) {}
  /// "Exists", "Delete", "Rename", "Open" or "Close", before it is done; `caminho` is empty for "Close".
  virtual void Arquivo(std::string_view /*operacao*/, std::string_view /*caminho*/) {}
};

/// What is reported beyond the rest; each costs a call on the way to the wrapped host where it is on.
struct TraceOptions {
  bool gravacoes = true;  ///< every stored record with its fields (copies them)
  bool arquivos = false;  ///< file operations
};

}  // namespace tremvik
