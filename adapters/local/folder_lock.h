#pragma once

#include <string>
#include <string_view>

#include "adapters/local/descriptor.h"

namespace tremvik {

/// Holds a folder against other processes as long as it lives; the kernel lets go of it when the process
/// ends, however it ends.
class FolderLock {
 public:
  /// Locks the file `file`, made for this user alone when missing and left in place. Raises 3045 with
  /// `in_use` as its words when another process holds it, file errors when it cannot be made or is no file.
  FolderLock(const std::string& file, std::string_view in_use);

 private:
  Descriptor file_;
};

}  // namespace tremvik
