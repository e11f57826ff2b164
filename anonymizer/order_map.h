// Other values for keys whose order rules look at.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "sample/draw.h"

namespace tremvik::anonymizer {

/// Texts of one length (bytes) and drawn ones in their place, which compare with one another as they did.
/// Digits become digits and small letters small letters; all else stays. What is all zeros stays so, and
/// nothing else becomes it.
class OrderMap {
 public:
  /// Leaves first characters equal to `kept_first` as they are, and lets no other one become it; NUL for
  /// none.
  OrderMap(const std::set<std::string>& texts, sample::Draw& draw, char kept_first = '\0');

  /// What stands for `text`, which is one of the texts.
  [[nodiscard]] const std::string& operator[](std::string_view text) const {
    return images_.find(text)->second;
  }

 private:
  void Descend(std::span<const std::string> texts, const std::string& image);

  std::map<std::string, std::string, std::less<>> images_;
  sample::Draw& draw_;
  char kept_first_;
};

}  // namespace tremvik::anonymizer
