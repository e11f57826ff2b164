// What each rule asks, in the words of people who do not program.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tremvik::report {

/// One rule as data/regras.csv tells it. Texts are UTF-8.
struct Rule {
  std::string codigo;      ///< "CR10-07", "ARQ-03", "ERR-6"
  std::string titulo;      ///< a few words
  std::string explicacao;  ///< what is asked, since when, why it commonly fails
  std::string como_mendar;
  std::string campos;  ///< further fields that the rule looks at, parted by blanks
  std::string texto1;  ///< the message's own texts, with {} in the place of what a run fills in
  std::string texto2;
};

/// All rules, in the order of the catalogue. Thread-safe.
[[nodiscard]] std::span<const Rule> Catalogue();

/// The rule of that code; null where there is none.
[[nodiscard]] const Rule* FindRule(std::string_view codigo);

}  // namespace tremvik::report
