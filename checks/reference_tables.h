#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "host/application.h"
#include "host/record_kind.h"
#include "host/reference_engine.h"

namespace tremvik {

/// Look-ups in the reference database "tblFixas.fix" of the component's folder. The database is opened and
/// closed around each look-up; every failure is the engine's run-time error.
class TabelasFixas {
 public:
  TabelasFixas(ReferenceEngine& engine, Application& application)
      : engine_(engine), application_(application) {}

  /// True when no row of the table of record kind `kind` (CR=05, 10, 14, 18, 20, 30) has the key
  /// `value` (UTF-8, as it stands). `mode` selects rows further: "" none, "0" those whose extra column is
  /// true, anything else those whose extra column is false; for CR=10 it is the table set of a period.
  [[nodiscard]] bool NaoExisteEmFixas(Kind kind, std::string_view value, std::string_view mode);

  /// The text of `column` in the first row of the query made of `pieces`, empty where there is no row; valid
  /// until the next call.
  [[nodiscard]] std::string_view PrimeiroTexto(std::initializer_list<std::string_view> pieces,
                                               std::string_view column);

 private:
  Database& Abrir();

  ReferenceEngine& engine_;
  Application& application_;
  std::string caminho_;
  std::string sql_;
  std::string texto_;
};

}  // namespace tremvik
