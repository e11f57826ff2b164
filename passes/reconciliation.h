#pragma once

#include <cstdint>
#include <vector>

#include "input/text_reader.h"
#include "passes/file_fault.h"

namespace tremvik {

/// What the quantity reconciliation found.
struct Reconciliation {
  enum class Achado : std::uint8_t {
    kConfere,
    kDiverge,            ///< counts differ: one fault for each kind
    kSegundoMestre,      ///< found on the way, the rest not read
    kCodigoDesconhecido  ///< likewise
  };

  Achado achado = Achado::kConfere;
  std::vector<FileFault> faults;
};

/// Counts the records of every kind in `arquivo`, read from its beginning, and compares the counts with the
/// quantities that the parent records announce. Raises `NumeroLinha` by the records read. Raises run-time
/// errors.
[[nodiscard]] Reconciliation CompararTotais(TextReader& arquivo, std::int16_t& NumeroLinha);

}  // namespace tremvik
