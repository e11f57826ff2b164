// A file that can be shown to others in the place of one that cannot.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "anonymizer/registrations.h"

namespace tremvik::anonymizer {

/// What stands for a file.
struct Anonymized {
  std::string bytes;            ///< as long as the file, line by line and column by column
  Registrations registrations;  ///< those of the file, for texts that name them
  bool known = false;           ///< the file is one whose records are known
};

/// The file with other registration numbers, amounts, invoice and export numbers, codes and keys, which is
/// accepted or refused as this one is, with the same rules at the same places. Check digits, codes and sums
/// are right where they were right and wrong where they were wrong; keys keep their order. Free texts keep
/// their blanks and signs only. Periods, CFOPs, sub-items, dates and quantities stay. In a file of another
/// kind every digit and letter changes.
///
/// One seed gives one result. What a store holds already under the old numbers it does not hold under the new
/// ones.
[[nodiscard]] Anonymized Anonymize(std::string_view bytes, std::uint64_t seed);

/// A seed that nobody can guess.
[[nodiscard]] std::uint64_t AnySeed();

}  // namespace tremvik::anonymizer
