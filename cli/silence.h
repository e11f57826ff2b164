#pragma once

#include <string_view>

#include "host/diagnostics.h"
#include "host/events.h"
#include "host/screen.h"

namespace tremvik::cli {

/// The user's side of an examination, which shows nothing.
struct Silence final : Screen, Events, Diagnostics {
  int MsgBox(std::string_view /*text*/, int /*style*/, std::string_view /*title*/) override { return 0; }
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& /*where*/) override {}
  void Duvida(const FaultLocation& /*where*/) override {}
};

}  // namespace tremvik::cli
