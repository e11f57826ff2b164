#pragma once

#include <string>
#include <string_view>

namespace tremvik {

/// Holds a folder against other processes as long as it lives; the kernel lets go of it when the process
/// ends, however it ends.
class FolderLock {
 public:
  /// Locks the file `file`, made when missing and left in place. Raises 3045 with `em_uso` as its words when
  /// another process holds it, file errors when it cannot be made.
  FolderLock(const std::string& file, std::string_view em_uso);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_;
};

/// A folder with a name of its own below the system's folder for temporary files; removed with all it holds.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace tremvik
