#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tremvik::report {

/// What names a declaration, as it stands in its header: digits of the IE, reference as AAAAMM. Both are
/// empty before the first header. UTF-8.
struct DeclarationKey {
  std::string ie;
  std::string referencia;
};

/// To which declaration each line of a file belongs.
class DeclarationKeys {
 public:
  explicit DeclarationKeys(std::string_view bytes);
  [[nodiscard]] const DeclarationKey& Of(int linha) const;

 private:
  std::map<int, DeclarationKey> by_line_;  ///< by the line of the header
};

}  // namespace tremvik::report
