#pragma once

#include <cstdint>
#include <string_view>

#include "host/diagnostics.h"
#include "host/files.h"
#include "host/screen.h"

namespace tremvik {

/// What the length pass reaches of the host.
struct LengthPassHost {
  Files& files;
  Screen& screen;
  Diagnostics& diagnostics;
};

/// The record length pass: reads the file at `path` as text and tells, in its own message box, the first line
/// whose record code is unknown or whose length is not exactly that of its kind. True when it told something.
/// Run-time errors of the reading are told too, not raised. `NumeroArquivoTexto` receives the file number.
[[nodiscard]] bool ValidarTamanhos(std::string_view path, const LengthPassHost& host,
                                   std::uint8_t& NumeroArquivoTexto);

}  // namespace tremvik
