#pragma once

#include <string_view>

#include "adapters/local/component_folder.h"
#include "host/files.h"

namespace tremvik {

/// Files whose temporary database is two names without a file: a run that keeps nothing deletes, makes and
/// renames it here, and the folder is left alone. All other files are those of `others`.
class TemporaryNames final : public Files {
 public:
  /// Both must outlive this object.
  TemporaryNames(const ComponentFolder& folder, Files& others) : folder_(folder), others_(others) {}

  /// "BDTemp.mdb" exists from now on.
  void Preparar() { empty_ = true; }

  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override { return others_.FreeFile(); }
  void Open(int number, std::string_view path) override { others_.Open(number, path); }
  std::size_t Read(int number, char* buffer, std::size_t count) override {
    return others_.Read(number, buffer, count);
  }
  void Close(int number) override { others_.Close(number); }
  void BeginRun() noexcept override { others_.BeginRun(); }
  void EndRun() noexcept override { others_.EndRun(); }

 private:
  /// Whether the name exists; null for any other file's path.
  bool* Find(std::string_view path);

  const ComponentFolder& folder_;
  Files& others_;
  bool empty_ = false;    // "BDTemp.mdb"
  bool renamed_ = false;  // "BDTempPrf.fix"
};

}  // namespace tremvik
