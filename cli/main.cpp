// The command-line host of the component.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <variant>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/terminal.h"
#include "text/readable.h"

namespace {

using tremvik::cli::ExitStatus;
using tremvik::cli::Output;

// What could not be written to standard output: a reader that went away wants nothing, a full disk is said.
ExitStatus Finish(ExitStatus saida, Output& out, Output& err) {
  out.Flush();
  if (!out.failed() || out.error() == EPIPE) return saida;
  err.Write("tremvik: não foi possível escrever o resultado (" + tremvik::cli::SystemError(out.error()) +
            ").\n");
  return ExitStatus::kEnvironment;
}

ExitStatus Run(int argc, const char* const* argv, Output& out, Output& err) {
  const auto parsed = tremvik::cli::ParseCommandLine(argc, argv);
  if (const auto* answer = std::get_if<tremvik::cli::Reply>(&parsed)) {
    out.Write(answer->out);
    err.Write(answer->err);
    return answer->saida;
  }
  auto& verb = *std::get<std::unique_ptr<tremvik::cli::Verb>>(parsed);
  return tremvik::cli::Execute(verb, tremvik::cli::Terminal::Detect(), out, err);
}

}  // namespace

// A file opened while one of the standard descriptors is closed would take its number and receive what is
// said.
void OpenStandardDescriptors() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDWR);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

int main(int argc, char** argv) {
  OpenStandardDescriptors();
  // A closed pipe or a file at its allowed size must not end an import half-way through: writing fails
  // instead.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    Output err(STDERR_FILENO, tremvik::cli::ColumnsOf(STDERR_FILENO));
    Output out(STDOUT_FILENO);
    return static_cast<int>(Finish(Run(argc, argv, out, err), out, err));
  } catch (const std::bad_alloc&) {
    std::fputs("tremvik: a memória não bastou. Feche outros programas e tente de novo.\n", stderr);
    return static_cast<int>(ExitStatus::kEnvironment);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tremvik: o programa falhou (%s). Avise quem o mantém.\n",
                 tremvik::text::Visible(error.what()).c_str());
  } catch (...) {
    std::fputs("tremvik: o programa falhou. Avise quem o mantém.\n", stderr);
  }
  return static_cast<int>(ExitStatus::kFailure);
}
