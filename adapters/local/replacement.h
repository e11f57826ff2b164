// Files that take the place of others in one step, whole or not at all.
#pragma once

#include <string>
#include <string_view>

#include "adapters/local/descriptor.h"

namespace tremvik {

/// The new file under a name of its own beside the old one, removed unless it took the other's place. Its
/// lock tells others that somebody is at work on it.
class Replacement {
 public:
  /// Removes what replacements of `target` that were killed left beside it. Raises 76 where the folder does
  /// not exist, and file errors.
  explicit Replacement(std::string target);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// Adds `bytes`. Raises file errors.
  void Write(std::string_view bytes);
  /// Takes the other's place once all bytes are on the disk. Raises file errors.
  void TakePlace();

 private:
  [[nodiscard]] bool IsOurs() const;

  std::string target_;
  std::string name_;
  Descriptor file_;
};

/// Puts `bytes` in the place of the file `path` in one step. Raises what `Replacement` raises.
void ReplaceFile(const std::string& path, std::string_view bytes);
/// Removes what replacements of the file `path` that were killed left beside it.
void RemoveAbandonedReplacements(const std::string& path) noexcept;

}  // namespace tremvik
