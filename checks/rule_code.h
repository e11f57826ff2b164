// The name of a rule, by which people, programs and the catalogue of rules speak of it.
#pragma once

#include <string_view>

namespace tremvik {

/// "CR07-03" for a rule on a record, in the order of the rules of its kind; "ARQ-02" for one on the file as a
/// whole. The form is checked when compiling. A code once published is never given to another rule.
class RuleCode {
 public:
  consteval RuleCode(const char* code) : code_(code) {
    if (!WellFormed(code_)) throw "a rule's code is CRnn-NN or ARQ-NN";
  }

  [[nodiscard]] constexpr operator std::string_view() const { return code_; }

 private:
  static constexpr bool IsNumber(std::string_view text) {
    return text.size() == 2 && text[0] >= '0' && text[0] <= '9' && text[1] >= '0' && text[1] <= '9';
  }
  static constexpr bool WellFormed(std::string_view code) {
    if (code.starts_with("ARQ-")) return IsNumber(code.substr(4));
    return code.size() == 7 && code.starts_with("CR") && IsNumber(code.substr(2, 2)) && code[4] == '-' &&
           IsNumber(code.substr(5));
  }

  std::string_view code_;
};

}  // namespace tremvik
