#include "adapters/local/replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <utility>

#include "adapters/local/system.h"
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

}  // namespace

Replacement::Replacement(std::string target) : target_(std::move(target)) {
  RemoveAbandonedReplacements(target_);
  do {
    name_ = target_ + std::string(kReplacement) + RandomSuffix();
    file_ = Descriptor(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file_ && errno == ENOENT)
      throw RuntimeError(erro::kCaminhoNaoEncontrado, "A pasta de '" + target_ + "' não existe.");
    if (!file_ && errno != EEXIST) throw FileError(errno, "Não foi possível gravar", target_);
  } while (!file_ || !IsOurs());
}

Replacement::~Replacement() {
  if (!name_.empty()) ::unlink(name_.c_str());
}

void Replacement::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_.get(), bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw FileError(errno, "Não foi possível gravar", target_);
    }
  }
}

// Only a file whose bytes are on the disk may take the place of a good one.
void Replacement::TakePlace() {
  if (::fsync(file_.get()) != 0 || std::rename(name_.c_str(), target_.c_str()) != 0)
    throw FileError(errno, "Não foi possível gravar", target_);
  name_.clear();
}

// Before the lock was taken somebody else may have held the file for abandoned.
bool Replacement::IsOurs() const {
  struct stat found {};
  return ::flock(file_.get(), LOCK_EX | LOCK_NB) == 0 && ::fstat(file_.get(), &found) == 0 &&
         found.st_nlink > 0;
}

void ReplaceFile(const std::string& path, std::string_view bytes) {
  const HeldSignals held;
  Replacement replacement(path);
  replacement.Write(bytes);
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

}  // namespace tremvik
