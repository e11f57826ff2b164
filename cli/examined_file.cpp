#include "cli/examined_file.h"

#include <utility>

#include "adapters/local/system.h"
#include "adapters/sqlite/embedded_host.h"
#include "cli/silence.h"
#include "examination/examination.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kMostBytes = 64UL * 1024 * 1024;  // four times the longest file that can be right
constexpr std::size_t kMostFindings = 1000;

}  // namespace

ExaminedFile ReadAndExamine(const std::string& path, const std::string& pasta) {
  ExaminedFile file;
  auto bytes = ReadRegularFile(path, kMostBytes);
  if (!bytes) {
    file.problema = ProblemOfFile(path);
    if (file.problema.empty()) {
      file.problema = text::InQuotes(path) +
                      " não pôde ser lido ou tem mais de 64 MiB, mais do que um arquivo Pré-Formatado pode "
                      "ter. Confira o nome.";
    }
    return file;
  }
  file.lido = true;
  file.bytes = *std::move(bytes);
  try {
    Silence silence;
    EmbeddedHost host({.pasta = pasta, .modo = Modo::kValidar}, silence, silence, silence);
    file.exame = Examinar(file.bytes, host.host(), {.limite = kMostFindings});
  } catch (const RuntimeError& error) {
    file.problema = "o arquivo não foi conferido: " + Remedy(error, pasta);
  }
  return file;
}

}  // namespace tremvik::cli
