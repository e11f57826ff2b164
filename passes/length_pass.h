#pragma once

#include <optional>
#include <string>

#include "input/text_reader.h"
#include "passes/place.h"

namespace tremvik {

/// What the length pass found.
struct LengthFault {
  std::string mensagem;
  std::optional<Place> place;  ///< none for an empty file
};

/// The record length pass: the first line of `arquivo`, read from its beginning, whose record code is unknown
/// or whose length is not exactly that of its kind; nothing where all are right. Raises run-time errors.
[[nodiscard]] std::optional<LengthFault> ValidarTamanhos(TextReader& arquivo);

}  // namespace tremvik
