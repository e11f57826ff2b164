#pragma once

#include <optional>
#include <string>

#include "input/text_reader.h"
#include "passes/file_fault.h"

namespace tremvik {

/// The record length pass: the first line of `arquivo`, read from its beginning, whose record code is unknown
/// or whose length is not exactly that of its kind; nothing where all are right. Raises run-time errors.
[[nodiscard]] std::optional<FileFault> ValidarTamanhos(TextReader& arquivo);

}  // namespace tremvik
