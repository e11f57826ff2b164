#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "cli/console.h"
#include "cli/environment.h"
#include "sample/sample.h"

namespace tremvik::cli {

enum class Verb { kImportar, kValidar, kListar, kExemplo, kConstruirTabelas, kVerificarTabelas };

/// What the user asks for, checked as far as the command line alone allows.
struct Request {
  Verb verb = Verb::kImportar;
  std::vector<std::string> arquivos;
  std::string pasta;  ///< the component's folder
  Answers responder = Answers::kAsk;
  bool json = false;
  bool nulo = false;  ///< names on standard input are parted by NUL
  unsigned paralelo = 1;
  std::string ie;          ///< dotted form; empty for all
  std::string referencia;  ///< "AAAA-MM"; empty for all
  sample::Options exemplo;
  std::string saida;          ///< file to write; empty for standard output
  bool sobrescrever = false;  ///< an earlier sample may be replaced
  std::string dados;          ///< folder of the CSV files; empty for the built-in rows
};

/// Help, the version, or what is wrong with the command line: texts for the two streams and the exit status.
struct Reply {
  ExitStatus saida = ExitStatus::kAccepted;
  std::string out;
  std::string err;
};

[[nodiscard]] std::variant<Request, Reply> ParseCommandLine(int argc, const char* const* argv);

}  // namespace tremvik::cli
