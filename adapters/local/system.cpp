#include "adapters/local/system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "adapters/local/descriptor.h"

namespace tremvik {

bool IsMissing(const std::string& path) {
  struct stat found {};
  if (::stat(path.c_str(), &found) == 0 || errno == EACCES) return false;
  if (errno == ENOENT || errno == ENOTDIR) return true;
  throw FileError(errno, "Não foi possível chegar a", path);
}

void MakeFolder(const std::string& path) {
  struct stat found {};
  if (::stat(path.c_str(), &found) == 0) {
    if (!S_ISDIR(found.st_mode)) throw FileError(ENOTDIR, "Não foi possível criar a pasta", path);
    return;
  }
  if (errno != ENOENT) throw FileError(errno, "Não foi possível criar a pasta", path);
  const auto slash = path.rfind('/');
  if (slash != std::string::npos && slash > 0) MakeFolder(path.substr(0, slash));
  if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST)
    throw FileError(errno, "Não foi possível criar a pasta", path);
}

void DemandOwnFile(const std::string& path) {
  struct stat found {};
  if (::lstat(path.c_str(), &found) != 0 || S_ISREG(found.st_mode)) return;
  throw RuntimeError(erro::kAcessoAoCaminho,
                     "No lugar de '" + path + "' está um atalho, uma pasta ou um dispositivo; tire-o de lá.");
}

void MakePrivateFile(const std::string& path) {
  const Descriptor made(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (made) return;
  if (errno != EEXIST) throw FileError(errno, "Não foi possível criar o arquivo", path);
  DemandOwnFile(path);
}

std::optional<std::string> ReadRegularFile(const std::string& path, std::size_t most) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat found {};
  if (!file || ::fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode)) return std::nullopt;
  std::string bytes;
  std::vector<char> piece(std::size_t{64} * 1024);
  while (bytes.size() <= most) {
    const ssize_t got = ::read(file.get(), piece.data(), piece.size());
    if (got == 0) return bytes;
    if (got > 0) {
      bytes.append(piece.data(), static_cast<std::size_t>(got));
    } else if (errno != EINTR) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

HeldSignals::HeldSignals() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    sigaddset(&ending, signal);
  ::pthread_sigmask(SIG_BLOCK, &ending, &before_);
}

HeldSignals::~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace tremvik
