// The digest that a database of reference tables carries in its header, of everything else in the file. Rows
// that somebody spoilt would be blamed on the taxpayer; a spoilt index likewise.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tremvik {

enum class DigestState {
  kAgrees,
  kDiffers,  ///< the file was changed after it was built
  kMissing   ///< the file was made by other means, or cannot be read
};

/// Takes the digest of a database file and compares it with the one in its header.
class DigestCheck {
 public:
  /// The next piece of the file. Every piece but the last has a whole number of 8 bytes, the first one at
  /// least 128 bytes unless it is the whole file.
  void Add(std::string_view piece);
  [[nodiscard]] DigestState state() const;

 private:
  friend void PutDigest(std::string& bytes);
  using Digest = std::array<char, 4>;
  void AddHeader(std::string_view piece);
  void AddBytes(std::string_view bytes);
  void AddWord(std::string_view bytes);
  [[nodiscard]] Digest Bytes() const;

  std::uint64_t value_ = 0xCBF29CE484222325;
  bool begun_ = false;
  std::optional<Digest> written_;  ///< none where the header holds none
};

/// Puts the digest of `bytes`, a whole database file, into its header.
void PutDigest(std::string& bytes);
/// Reads the file at `path` and compares.
[[nodiscard]] DigestState CheckDigest(const std::string& path);

}  // namespace tremvik
