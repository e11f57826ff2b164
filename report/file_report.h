// What the reports tell: one examined file after the other, and the sum of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "examination/findings.h"

namespace tremvik::report {

/// What became of a file.
enum class FileVerdict : std::uint8_t {
  kAccepted,  ///< "aceito"
  kRefused,   ///< "recusado"
  kError      ///< "erro": it could not be examined; `problema` says why
};

/// "aceito", "recusado", "erro".
[[nodiscard]] std::string_view NameOf(FileVerdict verdict);

/// A finding as a baseline knows it: without the line where it stands. Texts are UTF-8.
struct KnownFinding {
  std::string regra;
  std::string registro;
  std::string campo;
  std::string valor;
  std::string ie;          ///< of its declaration, digits as they stand; empty outside of declarations
  std::string referencia;  ///< of its declaration, AAAAMM as it stands
  std::size_t vezes = 1;   ///< how many such there are

  /// By the declaration, then the rule and the field; `vezes` does not count.
  [[nodiscard]] bool operator<(const KnownFinding& other) const {
    const auto key = [](const KnownFinding& k) {
      return std::tie(k.ie, k.referencia, k.regra, k.registro, k.campo, k.valor);
    };
    return key(*this) < key(other);
  }
};

/// "CR10-11, registro 10, campo Valor, valor "0O0", IE 110042490114, referência 201203 (2 vezes)".
[[nodiscard]] std::string InWords(const KnownFinding& known);

/// One file and its findings.
struct FileReport {
  std::string arquivo;        ///< name as it was given
  std::string conteudo;       ///< its bytes; the lines of the findings are shown from them
  std::string sha256;         ///< of the content, 64 hexadecimal digits in lower case; empty for none
  std::uint64_t tamanho = 0;  ///< of the content in bytes
  FileVerdict estado = FileVerdict::kError;
  std::string problema;  ///< a sentence, for kError
  Examination exame;
  /// Findings that the baseline knows and that are therefore not in `exame`.
  std::size_t conhecidas = 0;
  std::vector<KnownFinding> sumidas;  ///< known to the baseline and no longer found
};

/// What a report names at its head.
struct Heading {
  std::string programa;  ///< "tremvik 0.1.0"
  std::string tabelas;   ///< where the reference tables came from, or their digest
};

/// The sum of all files.
struct Summary {
  /// One file's findings.
  struct FileCount {
    std::string arquivo;
    std::size_t inconsistencias = 0;
  };
  static constexpr std::size_t kMostFiles = 20;

  std::size_t arquivos = 0;
  std::size_t aceitos = 0;
  std::size_t recusados = 0;
  std::size_t erros = 0;
  std::size_t faltas = 0;
  std::size_t avisos = 0;
  std::size_t conhecidas = 0;                    ///< left out because the baseline knows them
  std::size_t sumidas = 0;                       ///< known to the baseline and no longer found
  std::map<std::string, std::size_t> por_regra;  ///< findings by the rule's code
  std::vector<FileCount> por_arquivo;            ///< those with the most findings first, `kMostFiles` at most
  std::size_t com_inconsistencias = 0;           ///< files with findings

  void Add(const FileReport& file);
};

}  // namespace tremvik::report
