// An occurrence and its details, whose amounts and codes belong together.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tremvik::anonymizer {

/// A detail of an occurrence (CR=25 to 28).
struct Detail {
  std::string_view line;  ///< its whole content; equal ones are replaced alike
  std::string_view valor;
  std::string_view codigo = {};  ///< of a CR=28; empty for the others
};

/// An occurrence (CR=20) as it stands in the file.
struct Occurrence {
  std::string_view line;
  std::string_view valor;
  std::string_view sub_item;
  std::vector<Detail> details;
};

/// The registration that its authorization codes are made of, in the file and in its place.
struct Taxpayer {
  std::string_view before;
  std::string_view now;
};

struct OtherDetail {
  std::string valor;
  std::string codigo;
};
struct OtherOccurrence {
  std::string valor;
  std::vector<OtherDetail> details;  ///< one for each of the occurrence's
};

/// Other amounts and codes. The occurrence's amount equals the sum of its details where it did and differs
/// where it did; a code is rejected where it was; codes keep their order.
[[nodiscard]] OtherOccurrence Replace(const Occurrence& occurrence, const Taxpayer& taxpayer,
                                      std::uint64_t seed);

}  // namespace tremvik::anonymizer
