#include "passes/length_pass.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "layout/kinds.h"
#include "passes/whole_line.h"
#include "runtime/int16.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

// Reads a line, into `line` unless it is plainly right; true when it is.
bool LerLinhaCerta(TextReader& arquivo, TextReader::Line& line) {
  if (!TakeWholeLine(arquivo).empty()) return true;
  arquivo.ReadLine(line);
  const KindInfo* const kind = FindKind(line.code);
  return kind != nullptr && line.length == static_cast<std::size_t>(kind->length);
}

// The message about a line that is not right, and its columns that are missing or too many.
FileFault Conferir(const TextReader::Line& line, std::int16_t numero) {
  const KindInfo* const kind = FindKind(line.code);
  if (kind == nullptr) {
    return {"ARQ-02",
            "Código de Registro inválido! CR = " + Utf8(line.code) + "  -  Linha " + std::to_string(numero),
            {numero, "", {"CR", 1, 2}, line.code}};
  }
  const auto length = static_cast<std::size_t>(kind->length);
  const std::size_t last_right = std::min(line.length, length);
  const std::size_t wrong = std::max(line.length, length) - last_right;
  const int width = static_cast<int>(std::min<std::size_t>(wrong, std::numeric_limits<int>::max()));
  return {"ARQ-03",
          "Tamanho do registro inválido.  CR = " + Utf8(line.code) + "  -  Linha " + std::to_string(numero),
          {numero, kind->code, {"Tamanho", static_cast<int>(last_right) + 1, width}, {}},
          "a linha tem " + std::to_string(line.length) + (line.length == 1 ? " caractere" : " caracteres") +
              "; o certo são " + std::to_string(length)};
}

}  // namespace

std::optional<FileFault> ValidarTamanhos(TextReader& arquivo) {
  std::int16_t linhas = 0;
  TextReader::Line line;
  while (!arquivo.AtEnd()) {
    const bool certa = LerLinhaCerta(arquivo, line);
    Increment(linhas);
    if (!certa) return Conferir(line, linhas);
  }
  if (linhas == 0) return FileFault{"ARQ-01", "Arquivo vazio ou inválido !", {}};
  return std::nullopt;
}

}  // namespace tremvik
