// The file system of Windows, by wide names of any length.
#pragma once

#include <map>

#include "host/files.h"

namespace tremvik::com {

/// Files of this process. What is open when it ends its life is closed.
class WinFiles final : public Files {
 public:
  WinFiles() = default;
  WinFiles(const WinFiles&) = delete;
  WinFiles& operator=(const WinFiles&) = delete;
  ~WinFiles() override;

  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;

 private:
  std::map<int, void*> open_;  ///< system handles by file number
};

}  // namespace tremvik::com
