#include "adapters/local/system.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <utility>
#include <vector>

#include "adapters/local/descriptor.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

constexpr std::string_view kReplacement = ".novo-";
constexpr std::size_t kSuffix = 6;

std::string RandomSuffix() {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device random;
  std::string suffix;
  for (std::size_t i = 0; i < kSuffix; ++i)
    suffix += kLetters[random() % kLetters.size()];
  return suffix;
}

bool IsReplacement(std::string_view name, std::string_view of) {
  if (!name.starts_with(of)) return false;
  name.remove_prefix(of.size());
  if (!name.starts_with(kReplacement) || name.size() != kReplacement.size() + kSuffix) return false;
  return std::ranges::all_of(name.substr(kReplacement.size()), [](char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  });
}

void WriteAll(int descriptor, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw FileError(errno, "Não foi possível gravar", path);
    }
  }
}

// The new file under a name of its own, removed unless it took the other's place. Its lock tells others that
// somebody is at work on it.
class Replacement {
 public:
  explicit Replacement(std::string target) : target_(std::move(target)) {
    do {
      name_ = target_ + std::string(kReplacement) + RandomSuffix();
      file_ = Descriptor(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (!file_ && errno == ENOENT)
        throw RuntimeError(erro::kCaminhoNaoEncontrado, "A pasta de '" + target_ + "' não existe.");
      if (!file_ && errno != EEXIST) throw FileError(errno, "Não foi possível gravar", target_);
    } while (!file_ || !IsOurs());
  }
  ~Replacement() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  // Only a file whose bytes are on the disk may take the place of a good one.
  void Fill(std::string_view bytes) {
    WriteAll(file_.get(), bytes, target_);
    if (::fsync(file_.get()) != 0) throw FileError(errno, "Não foi possível gravar", target_);
  }
  void TakePlace() {
    if (std::rename(name_.c_str(), target_.c_str()) != 0)
      throw FileError(errno, "Não foi possível gravar", target_);
    name_.clear();
  }

 private:
  // Before the lock was taken somebody else may have held the file for abandoned.
  [[nodiscard]] bool IsOurs() const {
    struct stat found {};
    return ::flock(file_.get(), LOCK_EX | LOCK_NB) == 0 && ::fstat(file_.get(), &found) == 0 &&
           found.st_nlink > 0;
  }

  std::string target_;
  std::string name_;
  Descriptor file_;
};

}  // namespace

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

void ReplaceFile(const std::string& path, std::string_view bytes) {
  const HeldSignals held;
  RemoveAbandonedReplacements(path);
  Replacement replacement(path);
  replacement.Fill(bytes);
  replacement.TakePlace();
}

void RemoveAbandonedReplacements(const std::string& path) noexcept {
  try {
    const std::filesystem::path target(path);
    const std::string name = target.filename().string();
    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (!IsReplacement(entry.path().filename().string(), name)) continue;
      const Descriptor file(::open(entry.path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
      if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) ::unlink(entry.path().c_str());
    }
  } catch (const std::exception&) {
    return;  // the next run looks again
  }
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
