#include "adapters/local/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "adapters/local/system.h"

namespace tremvik {

FolderLock::FolderLock(const std::string& file, std::string_view in_use) {
  MakePrivateFile(file);
  file_ = Descriptor(::open(file.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file_) throw FileError(errno, "Não foi possível gravar na pasta o arquivo", file);
  if (::flock(file_.get(), LOCK_EX | LOCK_NB) == 0) return;
  if (errno == EWOULDBLOCK) throw RuntimeError(erro::kBancoEmUso, in_use);
  throw FileError(errno, "Não foi possível reservar a pasta pelo arquivo", file);
}

}  // namespace tremvik
