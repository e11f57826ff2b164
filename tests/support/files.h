// Whole files, and the number of a run-time error.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "host/runtime_error.h"

namespace tremvik::test {

inline void WriteFile(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

[[nodiscard]] inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder with a name of its own below the system's folder for temporary files; removed with all it holds.
class ScratchFolder {
 public:
  ScratchFolder() {
    if (mkdtemp(path_.data()) == nullptr)
      throw std::filesystem::filesystem_error("mkdtemp", std::error_code());
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_ = (std::filesystem::temp_directory_path() / "tremvik-XXXXXX").string();
};

/// The number of the run-time error that `action` raises, 0 when it raises none, -1 when it has no words.
template <typename Action>
int ErrorOf(const Action& action) {
  try {
    static_cast<void>(action());
  } catch (const RuntimeError& error) {
    return error.description().empty() ? -1 : error.number();
  }
  return 0;
}

}  // namespace tremvik::test
