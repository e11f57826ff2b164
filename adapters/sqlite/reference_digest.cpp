#include "adapters/sqlite/reference_digest.h"

#include <algorithm>
#include <cstring>

namespace tremvik {
namespace {

// Two numbers of a database's header that are the application's own, as big-endian words.
constexpr std::size_t kDigestAt = 60;    // user_version
constexpr std::size_t kIdentityAt = 68;  // application_id
constexpr std::string_view kIdentity = "TRMF";
constexpr std::size_t kHeader = 128;  // enough for both
constexpr std::size_t kWord = sizeof(std::uint64_t);

}  // namespace

void DigestCheck::Add(std::string_view piece) {
  if (begun_) return AddBytes(piece);
  begun_ = true;
  if (piece.size() >= kHeader && piece.substr(kIdentityAt).starts_with(kIdentity)) AddHeader(piece);
}

// The header's digest is zero while the digest is made.
void DigestCheck::AddHeader(std::string_view piece) {
  std::array<char, kHeader> header{};
  std::ranges::copy(piece.substr(0, kHeader), header.begin());
  Digest& written = written_.emplace();
  std::copy_n(header.begin() + kDigestAt, written.size(), written.begin());
  std::fill_n(header.begin() + kDigestAt, written.size(), '\0');
  AddBytes({header.data(), header.size()});
  AddBytes(piece.substr(kHeader));
}

void DigestCheck::AddBytes(std::string_view bytes) {
  for (; bytes.size() >= kWord; bytes.remove_prefix(kWord))
    AddWord(bytes.substr(0, kWord));
  if (!bytes.empty()) AddWord(bytes);
}

void DigestCheck::AddWord(std::string_view bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes.data(), bytes.size());
  value_ = (value_ ^ word) * 0x9E3779B97F4A7C15;
  value_ ^= value_ >> 29U;
}

DigestCheck::Digest DigestCheck::Bytes() const {
  Digest bytes{};
  const auto folded = static_cast<std::uint32_t>(value_ ^ (value_ >> 32U));
  std::memcpy(bytes.data(), &folded, bytes.size());
  return bytes;
}

DigestState DigestCheck::state() const {
  if (!written_) return DigestState::kMissing;
  return Bytes() == *written_ ? DigestState::kAgrees : DigestState::kDiffers;
}

void PutDigest(std::string& bytes) {
  bytes.replace(kIdentityAt, kIdentity.size(), kIdentity);
  DigestCheck check;
  check.Add(bytes);
  std::ranges::copy(check.Bytes(), bytes.begin() + kDigestAt);
}

}  // namespace tremvik
