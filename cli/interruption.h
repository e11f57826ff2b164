// Signals that tell the program to end.
#pragma once

namespace tremvik::cli {

/// From now on the first Ctrl-C (or SIGTERM, SIGHUP) lets `Interrupted` say so and leaves three seconds to
/// end in good order; the second ends the program at once. A signal that is ignored stays so.
void WatchForInterruption();

[[nodiscard]] bool Interrupted();

/// Waits until `descriptor` has something to read, its end included; false when interrupted.
[[nodiscard]] bool WaitForInput(int descriptor);

}  // namespace tremvik::cli
