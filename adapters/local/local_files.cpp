#include "adapters/local/local_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>

#include "adapters/local/descriptor.h"
#include "adapters/local/system.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

std::string MachinePath(const ComponentFolder& folder, std::string_view path) {
  if (path.empty()) throw RuntimeError(erro::kAcessoAoCaminho);
  if (path.find('\0') != std::string_view::npos) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  return folder.Resolve(path);
}

// A name that is missing is error 53, a folder on the way to it that is missing is error 76.
[[noreturn]] void RaiseForPath(int code, const std::string& path) {
  const auto slash = path.rfind('/');
  struct stat parent {};
  const bool orphan = code == ENOENT && slash != std::string::npos && slash > 0 &&
                      ::stat(path.substr(0, slash).c_str(), &parent) != 0;
  throw RuntimeError(orphan ? erro::kCaminhoNaoEncontrado : FileErrorNumber(code));
}

int RenameWithoutReplacing(const std::string& from, const std::string& to) {
#if defined(RENAME_NOREPLACE)
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;  // else the file system does not know the flag
#endif
  struct stat target {};
  if (::lstat(to.c_str(), &target) == 0) return EEXIST;
  return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

LocalFiles::~LocalFiles() {
  for (const int descriptor : descriptors_) {
    if (descriptor >= 0) ::close(descriptor);
  }
}

bool LocalFiles::Exists(std::string_view path) {
  const std::string name = MachinePath(folder_, path);
  struct stat found {};
  if (::lstat(name.c_str(), &found) == 0) return !S_ISDIR(found.st_mode);
  if (errno == ENOENT || errno == ENOTDIR) return false;
  RaiseForPath(errno, name);
}

void LocalFiles::Delete(std::string_view path) {
  const std::string name = MachinePath(folder_, path);
  if (::unlink(name.c_str()) != 0) RaiseForPath(errno, name);
}

void LocalFiles::Rename(std::string_view from, std::string_view to) {
  const std::string old_name = MachinePath(folder_, from);
  const std::string new_name = MachinePath(folder_, to);
  struct stat found {};
  if (::lstat(old_name.c_str(), &found) != 0) RaiseForPath(errno, old_name);
  if (const int code = RenameWithoutReplacing(old_name, new_name); code != 0) RaiseForPath(code, new_name);
}

int LocalFiles::FreeFile() {
  const auto* const free = std::ranges::find(descriptors_, kFree);
  if (free == descriptors_.end()) throw RuntimeError(erro::kExcessoDeArquivos);
  return static_cast<int>(free - descriptors_.begin()) + 1;
}

int& LocalFiles::Slot(int number) {
  if (number < 1 || number > kNumbers) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  return descriptors_.at(static_cast<std::size_t>(number - 1));
}

void LocalFiles::Open(int number, std::string_view path) {
  int& descriptor = Slot(number);
  if (descriptor != kFree) throw RuntimeError(erro::kArquivoJaAberto);
  const std::string name = MachinePath(folder_, path);
  Descriptor opened(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!opened) RaiseForPath(errno, name);
  struct stat found {};
  if (::fstat(opened.get(), &found) != 0 || !S_ISREG(found.st_mode))
    throw RuntimeError(erro::kAcessoAoCaminho);
  run_.Opened(number, name, found);
  descriptor = opened.Release();
}

std::size_t LocalFiles::Read(int number, char* buffer, std::size_t count) {
  const int descriptor = Slot(number);
  if (descriptor == kFree) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  ssize_t got = 0;
  do {
    got = ::read(descriptor, buffer, count);
  } while (got < 0 && errno == EINTR);
  if (got < 0) throw RuntimeError(erro::kEntradaSaida);
  if (got == 0) run_.EndReached(number, descriptor);
  return static_cast<std::size_t>(got);
}

void LocalFiles::Close(int number) {
  int& descriptor = Slot(number);
  if (descriptor >= 0) ::close(descriptor);
  descriptor = kFree;
}

}  // namespace tremvik
