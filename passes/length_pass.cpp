#include "passes/length_pass.h"

#include <algorithm>
#include <limits>
#include <string>

#include "host/runtime_error.h"
#include "input/text_reader.h"
#include "layout/kinds.h"
#include "runtime/int16.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

void Mostrar(const LengthPassHost& host, std::string_view mensagem, const FaultLocation* where = nullptr) {
  host.screen.SetPointer(ponteiro::kSeta);
  if (where != nullptr) host.diagnostics.Inconsistencia(*where);
  host.screen.MsgBox(mensagem, estilo::kCritico, "Mensagem...");
}

struct Fault {
  std::string mensagem;
  FaultLocation where;
};

bool TemTamanhoCerto(const TextReader::Line& line) {
  const KindInfo* const kind = FindKind(line.code);
  return kind != nullptr && line.length == static_cast<std::size_t>(kind->length);
}

// The message about a line that is not right, and its columns that are missing or too many.
Fault Conferir(const TextReader::Line& line, std::int16_t numero) {
  const KindInfo* const kind = FindKind(line.code);
  if (kind == nullptr) {
    return {"Código de Registro inválido! CR = " + Utf8(line.code) + "  -  Linha " + std::to_string(numero),
            {numero, "", "CR", 1, 2, line.code}};
  }
  const auto length = static_cast<std::size_t>(kind->length);
  const std::size_t last_right = std::min(line.length, length);
  const std::size_t wrong = std::max(line.length, length) - last_right;
  const int width = static_cast<int>(std::min<std::size_t>(wrong, std::numeric_limits<int>::max()));
  return {"Tamanho do registro inválido.  CR = " + Utf8(line.code) + "  -  Linha " + std::to_string(numero),
          {numero, kind->code, "Tamanho", static_cast<int>(last_right) + 1, width, {}}};
}

bool Percorrer(std::string_view path, const LengthPassHost& host, std::uint8_t& NumeroArquivoTexto) {
  NumeroArquivoTexto = ToByte(host.files.FreeFile());
  TextReader reader(host.files, NumeroArquivoTexto, path);
  std::int16_t linhas = 0;
  TextReader::Line line;
  while (!reader.AtEnd()) {
    reader.ReadLine(line);
    Increment(linhas);
    if (TemTamanhoCerto(line)) continue;
    const Fault fault = Conferir(line, linhas);
    reader.Close();
    Mostrar(host, fault.mensagem, &fault.where);
    return true;
  }
  reader.Close();
  if (linhas > 0) return false;
  Mostrar(host, "Arquivo vazio ou inválido !");
  return true;
}

}  // namespace

bool ValidarTamanhos(std::string_view path, const LengthPassHost& host, std::uint8_t& NumeroArquivoTexto) {
  try {
    return Percorrer(path, host, NumeroArquivoTexto);
  } catch (...) {
    const RuntimeError error = CurrentRuntimeError();
    Mostrar(host, error.number() == erro::kFimDoArquivo
                      ? "Arquivo vazio ou inválido!"
                      : "Erro " + std::to_string(error.number()) + " -  " + error.description());
    return true;
  }
}

}  // namespace tremvik
