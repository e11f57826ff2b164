// What an examination tells: every fault of a file, each in the words of the component.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tremvik {

/// What kind of thing a finding is.
enum class FindingKind : std::uint8_t {
  kFault,    ///< the import refuses the file for it
  kQuestion  ///< the import asks whether to go on
};

/// One fault or question: what the component says of it, and where it is. Texts are UTF-8.
struct Finding {
  std::string regra;  ///< the rule's code
  FindingKind tipo = FindingKind::kFault;
  int linha = 0;    ///< in the file, from 1; 0 where the fault belongs to no line
  int coluna = 0;   ///< first column of the field, from 1; 0 where it belongs to none
  int largura = 0;  ///< width of the field in characters
  std::string registro;
  std::string campo;
  std::string valor;  ///< what stands in the field
  std::string mensagem;
  std::string porque;         ///< the reason in figures or the likely cause; empty for none
  bool doImportador = false;  ///< what one run of the import tells of this file
  friend bool operator==(const Finding&, const Finding&) = default;
};

/// Lines that could not be examined, and why.
struct Unexamined {
  int linha = 0;
  int ate = 0;
  std::string porque;
  friend bool operator==(const Unexamined&, const Unexamined&) = default;
};

/// How the import takes the file as it stands.
enum class FileState : std::uint8_t { kAccepted, kRefused };

/// All findings of a file, in the order of its lines.
struct Examination {
  FileState estado = FileState::kRefused;
  int declaracoes = 0;  ///< headers of the file
  int registros = 0;    ///< lines of the file
  std::vector<Finding> inconsistencias;
  std::vector<Unexamined> naoExaminado;
  bool limitado = false;  ///< the limit was reached: there may be more
  int execucoes = 0;      ///< runs of the component that it took, over the file and over parts of it
  friend bool operator==(const Examination&, const Examination&) = default;
};

}  // namespace tremvik
