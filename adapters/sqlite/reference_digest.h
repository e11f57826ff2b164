// The digest that a database of reference tables carries in its header, of everything else in the file. Rows
// that somebody spoilt would be blamed on the taxpayer; a spoilt index likewise.
#pragma once

#include <string>

namespace tremvik {

enum class DigestState {
  kAgrees,
  kDiffers,  ///< the file was changed after it was built
  kMissing   ///< the file was made by other means, or cannot be read
};

/// Puts the digest of `bytes`, a whole database file, into its header.
void PutDigest(std::string& bytes);
/// Reads the file at `path` and compares.
[[nodiscard]] DigestState CheckDigest(const std::string& path);

}  // namespace tremvik
