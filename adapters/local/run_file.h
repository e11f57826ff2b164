#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

namespace tremvik {

/// Proves that a run's passes see one content: at each opening of the file that the run opened first, and
/// each time its end is reached, its device, inode, size and times are those of the first opening.
class RunFile {
 public:
  void Begin() noexcept;
  void End() noexcept { in_run_ = false; }

  /// `name` was opened as `number` and is what `found` says. Raises 57 when it has changed in the run.
  void Opened(int number, std::string_view name, const struct stat& found);
  /// The end of what was opened as `number` was read, at `descriptor`. Raises 57 when it has changed.
  void EndReached(int number, int descriptor) const;

 private:
  bool in_run_ = false;
  std::string name_;
  std::optional<struct stat> first_;
  int number_ = 0;  ///< under which it is open
};

}  // namespace tremvik
