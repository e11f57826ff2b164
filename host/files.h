#pragma once

#include <cstddef>
#include <string_view>

namespace tremvik {

/// File operations. Paths are UTF-8; a file of the component's folder is the folder's path followed by "\"
/// and the name, on every platform. Every operation raises the runtime's file errors (53, 55, 57, 58, 61, 67,
/// 70, 75, 76).
struct Files {
  virtual ~Files() = default;
  /// True when a file of exactly that name exists.
  virtual bool Exists(std::string_view path) = 0;
  virtual void Delete(std::string_view path) = 0;
  /// Renames; an existing target is error 58.
  virtual void Rename(std::string_view from, std::string_view to) = 0;
  /// The lowest file number not in use, from 1 on; none left is error 67.
  virtual int FreeFile() = 0;
  /// Opens an existing file for reading under `number`.
  virtual void Open(int number, std::string_view path) = 0;
  /// Reads up to `count` bytes into `buffer` and returns how many were read; 0 only at the end of the file.
  virtual std::size_t Read(int number, char* buffer, std::size_t count) = 0;
  /// Closes `number`; a number that is not open is no error.
  virtual void Close(int number) = 0;

  /// A run of several passes over one file begins or has ended. Meanwhile a host that can do so gives every
  /// opening of the file the content that the first one saw.
  virtual void BeginRun() noexcept {}
  virtual void EndRun() noexcept {}
};

}  // namespace tremvik
