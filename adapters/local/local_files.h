#pragma once

#include <array>
#include <string_view>

#include "adapters/local/component_folder.h"
#include "adapters/local/run_file.h"
#include "host/files.h"

namespace tremvik {

/// The runtime's file operations on this machine's file system. Only regular files are opened: a directory, a
/// pipe or a device is error 75 at once, so that no read ever blocks or runs without end. A file
/// that changes in a run is error 57.
class LocalFiles final : public Files {
 public:
  /// `folder` must outlive this object.
  explicit LocalFiles(const ComponentFolder& folder) : folder_(folder) { descriptors_.fill(kFree); }
  ~LocalFiles() override;
  LocalFiles(const LocalFiles&) = delete;
  LocalFiles& operator=(const LocalFiles&) = delete;

  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;
  void BeginRun() noexcept override { run_.Begin(); }
  void EndRun() noexcept override { run_.End(); }

 private:
  /// File numbers go from 1 to 511, as in the runtime.
  static constexpr int kNumbers = 511;
  static constexpr int kFree = -1;
  int& Slot(int number);

  const ComponentFolder& folder_;
  std::array<int, kNumbers> descriptors_{};
  RunFile run_;
};

}  // namespace tremvik
