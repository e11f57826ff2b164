#include "passes/length_pass.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "layout/kinds.h"
#include "runtime/int16.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

bool TemTamanhoCerto(const TextReader::Line& line) {
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
  return {
      "ARQ-03",
      "Tamanho do registro inválido.  CR = " + Utf8(line.code) + "  -  Linha " + std::to_string(numero),
      {numero, kind->code, {"Tamanho", static_cast<int>(last_right) + 1, width}, {}},
      "a linha tem " + std::to_string(line.length) + " caracteres; o certo são " + std::to_string(length)};
}

}  // namespace

std::optional<FileFault> ValidarTamanhos(TextReader& arquivo) {
  std::int16_t linhas = 0;
  TextReader::Line line;
  while (!arquivo.AtEnd()) {
    arquivo.ReadLine(line);
    Increment(linhas);
    if (!TemTamanhoCerto(line)) return Conferir(line, linhas);
  }
  if (linhas == 0) return FileFault{"ARQ-01", "Arquivo vazio ou inválido !", {}};
  return std::nullopt;
}

}  // namespace tremvik
