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
namespace {

[[noreturn]] void RaiseFor(int code, std::string_view what, const std::string& path) {
  throw RuntimeError(FileErrorNumber(code), std::string(what).append(" '").append(path).append("'."));
}

}  // namespace

FolderLock::FolderLock(const std::string& file, std::string_view em_uso)
    : descriptor_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
  if (descriptor_ < 0) RaiseFor(errno, "Não foi possível gravar na pasta o arquivo", file);
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  const int code = errno;
  ::close(descriptor_);
  if (code == EWOULDBLOCK) throw RuntimeError(erro::kBancoEmUso, em_uso);
  RaiseFor(code, "Não foi possível reservar a pasta pelo arquivo", file);
}

FolderLock::~FolderLock() { ::close(descriptor_); }

ScratchFolder::ScratchFolder() {
  std::error_code code;
  const auto temporaries = std::filesystem::temp_directory_path(code);
  path_ = (code ? std::filesystem::path("/tmp") : temporaries) / "tremvik-XXXXXX";
  if (::mkdtemp(path_.data()) == nullptr) {
    RaiseFor(errno, "Não foi possível criar uma pasta temporária (TMPDIR diz onde)", path_);
  }
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tremvik
