// What the reports tell: one examined file after the other, and the sum of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
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

/// One file and its findings.
struct FileReport {
  std::string arquivo;        ///< name as it was given
  std::string conteudo;       ///< its bytes; the lines of the findings are shown from them
  std::string sha256;         ///< of the content, 64 hexadecimal digits in lower case; empty for none
  std::uint64_t tamanho = 0;  ///< of the content in bytes
  FileVerdict estado = FileVerdict::kError;
  std::string problema;  ///< a sentence, for kError
  Examination exame;
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
  std::map<std::string, std::size_t> por_regra;  ///< findings by the rule's code
  std::vector<FileCount> por_arquivo;            ///< those with the most findings first, `kMostFiles` at most
  std::size_t com_inconsistencias = 0;           ///< files with findings

  void Add(const FileReport& file);
};

}  // namespace tremvik::report
