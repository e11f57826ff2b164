// What this machine's file system does beyond the standard library: private files, signals.
#pragma once

#include <csignal>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/local/file_errors.h"

namespace tremvik {

/// True when nothing stands at `path`. Raises file errors where the path itself cannot be followed.
[[nodiscard]] bool IsMissing(const std::string& path);
/// Makes the folder `path` and those above it that are missing, for this user alone. Raises file errors.
void MakeFolder(const std::string& path);
/// Raises 75 when what stands at `path` is no regular file; a link is none.
void DemandOwnFile(const std::string& path);
/// Makes an empty file that this user alone may read. One that exists is left as it is, unless
/// `DemandOwnFile` refuses it. Raises file errors.
void MakePrivateFile(const std::string& path);
/// The bytes of the regular file at `path`, which may be a link; nothing when it cannot be read, is no
/// regular file or has more than `most` bytes. Never waits.
[[nodiscard]] std::optional<std::string> ReadRegularFile(const std::string& path, std::size_t most);

/// As long as it lives the signals that end a program wait, so that it can take back what it left on the
/// disk.
class HeldSignals {
 public:
  HeldSignals();
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace tremvik
