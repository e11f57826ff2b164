#pragma once

#include <string_view>

namespace tremvik {

/// A fault: the rule that found it, and where it really is, apart from what the message's words say.
struct FaultLocation {
  int linha = 0;              ///< record number in the file, from 1
  std::string_view registro;  ///< record code, "05"; empty when the code itself is unknown
  /// Field name as the layout declares it, UTF-8; "Tamanho" where the line's length is wrong.
  std::string_view campo;
  int posicao = 0;  ///< 1-based column of the field, or of the first character missing or too many
  int largura = 0;  ///< width of the field, or how many characters are missing or too many
  /// The field's bytes as they stand in the file (Windows-1252); empty for "Tamanho".
  std::string_view valor;
  std::string_view regra = {};     ///< the rule's code, "CR07-03"
  std::string_view mensagem = {};  ///< what the rule says, lines parted by CR LF
  std::string_view porque = {};    ///< the reason in figures; empty for none
};

/// Receives the true place of a fault right before the user is told of it.
struct Diagnostics {
  virtual ~Diagnostics() = default;
  /// A refusal is about to be shown. A count mismatch may give several, one for each record kind.
  virtual void Inconsistencia(const FaultLocation& where) = 0;
  /// A value is about to be asked about (Sim/Não). Answered No, the run ends without a further message.
  virtual void Duvida(const FaultLocation& where) = 0;
};

}  // namespace tremvik
