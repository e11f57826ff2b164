#include "adapters/local/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "adapters/local/local_files.h"
#include "host/runtime_error.h"

namespace tremvik {

FolderLock::FolderLock(const std::string& file, std::string_view em_uso)
    : descriptor_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
  if (descriptor_ < 0) throw RuntimeError(FileErrorNumber(errno));
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  const int code = errno;
  ::close(descriptor_);
  if (code == EWOULDBLOCK) throw RuntimeError(erro::kBancoEmUso, em_uso);
  throw RuntimeError(FileErrorNumber(code));
}

FolderLock::~FolderLock() { ::close(descriptor_); }

ScratchFolder::ScratchFolder() {
  std::error_code code;
  const auto temporaries = std::filesystem::temp_directory_path(code);
  path_ = (code ? std::filesystem::path("/tmp") : temporaries) / "tremvik-XXXXXX";
  if (::mkdtemp(path_.data()) == nullptr) throw RuntimeError(FileErrorNumber(errno));
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tremvik
