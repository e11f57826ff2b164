#pragma once

#include <cstdint>
#include <string>

namespace tremvik {

/// How a run ended.
struct Outcome {
  enum class Estado : std::uint8_t {
    kNenhum,    ///< no run has ended yet
    kAceito,    ///< every record is right
    kRecusado,  ///< a fault was told, or a question was answered No
    kErro,      ///< a run-time error was told
    kSilencio   ///< ended without a word: the file of a second run of an instance ends in its master record
  };

  Estado estado = Estado::kNenhum;
  int numero = 0;              ///< of the run-time error
  std::string descricao = {};  ///< its description, UTF-8; may be missing where memory ran out
};

}  // namespace tremvik
