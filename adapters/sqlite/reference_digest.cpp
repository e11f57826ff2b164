#include "adapters/sqlite/reference_digest.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

#include "adapters/local/descriptor.h"

namespace tremvik {
namespace {

// Two numbers of a database's header that are the application's own, as big-endian words.
constexpr std::size_t kDigestAt = 60;    // user_version
constexpr std::size_t kIdentityAt = 68;  // application_id
constexpr std::array<char, 4> kIdentity{'T', 'R', 'M', 'F'};
constexpr std::size_t kHeader = 100;

// Over eight bytes at a time; every piece but the last has a whole number of them.
class Digest {
 public:
  void Add(const char* bytes, std::size_t count) {
    for (; count >= kWord; bytes += kWord, count -= kWord)
      AddWord(bytes, kWord);
    if (count > 0) AddWord(bytes, count);
  }
  [[nodiscard]] std::array<char, 4> Bytes() const {
    std::array<char, 4> bytes{};
    const auto folded = static_cast<std::uint32_t>(value_ ^ (value_ >> 32U));
    std::memcpy(bytes.data(), &folded, bytes.size());
    return bytes;
  }

 private:
  static constexpr std::size_t kWord = sizeof(std::uint64_t);
  void AddWord(const char* bytes, std::size_t count) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, count);
    value_ = (value_ ^ word) * 0x9E3779B97F4A7C15;
    value_ ^= value_ >> 29U;
  }

  std::uint64_t value_ = 0xCBF29CE484222325;
};

// The header's digest, which is zero while the digest is made.
std::array<char, 4> TakeDigest(char* header) {
  std::array<char, 4> written{};
  std::copy_n(header + kDigestAt, written.size(), written.begin());
  std::fill_n(header + kDigestAt, written.size(), '\0');
  return written;
}

}  // namespace

void PutDigest(std::string& bytes) {
  std::copy(kIdentity.begin(), kIdentity.end(), bytes.begin() + kIdentityAt);
  (void)TakeDigest(bytes.data());
  Digest digest;
  digest.Add(bytes.data(), bytes.size());
  std::ranges::copy(digest.Bytes(), bytes.begin() + kDigestAt);
}

DigestState CheckDigest(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  alignas(std::uint64_t) std::array<char, std::size_t{16} * 1024> piece;
  Digest digest;
  std::optional<std::array<char, 4>> written;
  while (true) {
    const ssize_t got = file ? ::read(file.get(), piece.data(), piece.size()) : -1;
    if (got < 0) return DigestState::kMissing;
    if (got == 0) break;
    const auto count = static_cast<std::size_t>(got);
    if (!written) {
      if (count < kHeader || !std::equal(kIdentity.begin(), kIdentity.end(), piece.begin() + kIdentityAt))
        return DigestState::kMissing;
      written = TakeDigest(piece.data());
    }
    digest.Add(piece.data(), count);
  }
  if (!written) return DigestState::kMissing;
  return digest.Bytes() == *written ? DigestState::kAgrees : DigestState::kDiffers;
}

}  // namespace tremvik
