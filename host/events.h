#pragma once

namespace tremvik {

/// Listener of the component's two events, called synchronously on the caller's thread.
struct Events {
  virtual ~Events() = default;
  /// A step of the run begins; the host advances a progress display.
  virtual void Progresso() = 0;
  /// The user has seen a fault; the host closes its import screen.
  virtual void Fechar() = 0;
};

}  // namespace tremvik
