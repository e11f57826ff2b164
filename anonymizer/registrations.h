// Other registration numbers in the place of those of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace tremvik::anonymizer {

/// A number that belongs to `text` and `seed` alone.
[[nodiscard]] std::uint64_t Mixed(std::uint64_t seed, std::string_view text);

/// The digits of `text` drawn anew, zeros as zeros and no other as one; what is no digit stays. The same text
/// and seed give the same.
[[nodiscard]] std::string OtherDigits(std::string_view text, std::uint64_t seed);

/// State registrations (IE, 12 characters) and CNPJ (14 characters) by those that stand for them. Check
/// digits are right where they were right and wrong where they were wrong; IEs keep their order and whether
/// they begin with 8. Numbers that are not plain digits keep what is none.
class Registrations {
 public:
  /// `ies` are all the IEs of the file; they may be malformed. The same seed gives the same numbers.
  Registrations(const std::set<std::string>& ies, std::uint64_t seed);

  /// What stands for one of the file's IEs.
  [[nodiscard]] const std::string& IE(std::string_view ie) const { return ies_.find(ie)->second; }
  /// What stands for a CNPJ; it is known from then on.
  const std::string& CNPJ(std::string_view cnpj);

  /// `text` with each registration number in it replaced, written with points and bars or without: those of
  /// the file, and others whose check digits are right.
  [[nodiscard]] std::string InText(std::string_view text) const;

 private:
  void DrawIEs(const std::set<std::string>& ies);
  std::size_t ReplaceNumber(std::string& text, std::size_t at, std::size_t digits) const;
  [[nodiscard]] std::string Replacement(const std::string& digits) const;

  std::uint64_t seed_;
  std::map<std::string, std::string, std::less<>> ies_;
  std::map<std::string, std::string, std::less<>> cnpjs_;
};

}  // namespace tremvik::anonymizer
