#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "checks/verdict.h"
#include "host/diagnostics.h"
#include "host/events.h"
#include "host/files.h"
#include "host/screen.h"

namespace tremvik {

/// What the quantity reconciliation reaches outside itself.
struct ReconciliationHost {
  Files& files;
  Screen& screen;
  Events& events;
  Diagnostics& diagnostics;
  /// Tells a fault the common way (contact header, event, closing call); may raise run-time errors.
  std::function<void(const Refusal&)> erro_sair;
};

/// Counts the records of every kind in the file at `path`, read as text, and compares the counts with the
/// quantities that the parent records announce; shows all kinds that differ in one box. True when something
/// was told. Raises `NumeroLinha` by the records read; `NumeroArquivoTexto` receives the file number. Raises
/// run-time errors, the file closed.
[[nodiscard]] bool CompararTotais(std::string_view path, const ReconciliationHost& host,
                                  std::uint8_t& NumeroArquivoTexto, std::int16_t& NumeroLinha);

}  // namespace tremvik
