// The file system of Windows, by wide names of any length.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/files.h"

namespace tremvik::com {

/// True when the caller may make files in `folder`.
[[nodiscard]] bool MayWrite(std::string_view folder);
/// Says that the caller may not.
[[nodiscard]] std::string Unwritable(std::string_view folder);

/// The first bytes of the file at `path`, `most` or all of them; nothing when it cannot be read. Whoever has
/// the file open meanwhile is not disturbed.
[[nodiscard]] std::optional<std::string> BeginningOf(std::string_view path, std::size_t most);

/// Files of this process. A file that is closed stays with the system, denied to writers, until it is opened
/// again or LetGo: whoever reads it in several passes reads the same in each. What is open when this object
/// ends its life is closed.
class WinFiles final : public Files {
 public:
  WinFiles() = default;
  WinFiles(const WinFiles&) = delete;
  WinFiles& operator=(const WinFiles&) = delete;
  ~WinFiles() override;

  bool Exists(std::string_view path) override;
  /// What fails for a reason that the user can mend (in use, read-only, a folder's rights) says so.
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;
  /// Closes the files that are kept; those that are open stay so.
  void LetGo();

 private:
  struct File {
    std::wstring path;
    void* handle;
  };
  std::map<int, File> open_;  ///< by file number
  std::vector<File> kept_;
};

}  // namespace tremvik::com
