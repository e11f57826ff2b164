// The command-line host of the component.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <variant>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/terminal.h"

namespace {

using tremvik::cli::Output;
using tremvik::cli::Saida;

// What could not be written to standard output: a reader that went away wants nothing, a full disk is said.
Saida Finish(Saida saida, Output& out, Output& err) {
  out.Flush();
  if (!out.failed() || out.error() == EPIPE) return saida;
  err.Write("tremvik: não foi possível escrever o resultado (" + tremvik::cli::SystemError(out.error()) +
            ").\n");
  return Saida::kAmbiente;
}

Saida Run(int argc, const char* const* argv, Output& out, Output& err) {
  const auto parsed = tremvik::cli::ParseCommandLine(argc, argv);
  if (const auto* answer = std::get_if<tremvik::cli::Resposta>(&parsed)) {
    out.Write(answer->out);
    err.Write(answer->err);
    return answer->saida;
  }
  return tremvik::cli::Execute(std::get<tremvik::cli::Pedido>(parsed), tremvik::cli::Terminal::Detect(), out,
                               err);
}

}  // namespace

int main(int argc, char** argv) {
  // A closed pipe must not end an import half-way through.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    Output err(STDERR_FILENO);
    Output out(STDOUT_FILENO);
    return static_cast<int>(Finish(Run(argc, argv, out, err), out, err));
  } catch (const std::bad_alloc&) {
    std::fputs("tremvik: a memória não bastou. Feche outros programas e tente de novo.\n", stderr);
    return static_cast<int>(Saida::kAmbiente);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tremvik: o programa falhou (%s). Avise quem o mantém.\n", error.what());
  } catch (...) {
    std::fputs("tremvik: o programa falhou. Avise quem o mantém.\n", stderr);
  }
  return static_cast<int>(Saida::kFalha);
}
