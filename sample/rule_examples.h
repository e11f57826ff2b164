// A file for each rule that breaks it and no other, and beside it the nearest one that is accepted.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tremvik::sample {

/// What breaks one rule, as data/exemplos.csv tells it: a small valid file and edits (FileBuilder). Texts are
/// UTF-8.
struct RuleExample {
  std::string codigo;     ///< "CR10-07"
  std::string registros;  ///< the records of the file: "05 07*2"
  std::string edicoes;
  /// Further edits that make the file right again; "registros=05 10 30" in front stands for other records.
  /// None where the records without any edit are right.
  std::string correcao;
  int linha = 0;         ///< where the fault is; 0 where it belongs to no line
  std::string registro;  ///< the record's code there, empty where it is unknown
  std::string campo;
  int linha_citada = 0;              ///< the line that the message names
  std::vector<std::string> valores;  ///< what the message says in the place of each {}
  std::string porque;                ///< the reason in figures; empty for none
  std::string motivo;                ///< why no file breaks the rule; then all else is empty
};

/// One for each rule of the catalogue, in its order. Thread-safe.
[[nodiscard]] std::span<const RuleExample> RuleExamples();

/// The one of that rule; null where there is no such rule.
[[nodiscard]] const RuleExample* FindRuleExample(std::string_view codigo);

/// The bytes of the file that breaks the rule, and of the one that breaks none; for an example with a file.
[[nodiscard]] std::string Broken(const RuleExample& example);
[[nodiscard]] std::string Mended(const RuleExample& example);

}  // namespace tremvik::sample
