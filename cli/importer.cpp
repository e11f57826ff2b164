#include "cli/importer.h"

#include "adapters/trace/tracing_host.h"
#include "cli/faulty_line.h"
#include "cli/json_lines.h"
#include "cli/text.h"
#include "component/tremvik.h"

namespace tremvik::cli {
namespace {

constexpr std::string_view kSuccessTitle = "Arquivo Pré-Formatado";

Console::Options ConsoleOptions(const RunOptions& options, const Terminal& terminal) {
  Console::Options console;
  console.responder = options.responder;
  console.interactive = !options.many && terminal.in && (options.json ? terminal.err : terminal.out);
  console.show = !options.json;
  console.framed = options.json ? terminal.err : terminal.out;
  console.colour = !options.json && terminal.colour;
  console.width = terminal.width;
  return console;
}

std::string NameOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

Importer::Importer(const RunOptions& options, const Terminal& terminal, Output& out, Output& err)
    : options_(options),
      out_(out),
      err_(err),
      bar_(terminal.bar && !options.many && !(options.json && terminal.out), terminal.colour),
      console_(ConsoleOptions(options, terminal), options.many ? messages_ : out, err, bar_),
      host_({.pasta = options.pasta, .modo = options.modo}, console_, bar_, console_) {}

ExitStatus Importer::Run(const std::string& path) {
  console_.Begin(path, options_.many ? kSuccessTitle : "");
  if (!options_.json) {
    RunTrace trace;
    Verdict verdict = Validate(path, trace, false);
    Keep(path, verdict);
    Summarize(path, verdict);
    return verdict.saida;
  }
  JsonLines lines(out_, options_.many ? path : "");
  Verdict verdict = Validate(path, lines, true);
  Keep(path, verdict);
  lines.Fim(verdict.saida != ExitStatus::kAccepted, verdict.linha, verdict.mensagem);
  if (!verdict.problema.empty()) err_.Write("tremvik: " + verdict.problema + "\n");
  return verdict.saida;
}

Importer::Verdict Importer::Validate(const std::string& path, RunTrace& trace, bool trace_records) {
  const TracingHost traced(host_.host(), trace, {.gravacoes = trace_records});
  Tremvik tremvik(traced.host());
  host_.AcompanharLinha([&tremvik] { return int{tremvik.NroLinha()}; });
  if (bar_.on()) bar_.Begin(CountLines(path), [&tremvik] { return int{tremvik.NroLinha()}; });
  tremvik.set_bolRetMonitora(false);
  tremvik.Monitora(path);
  bar_.End();

  Verdict verdict;
  verdict.declaracoes = trace.declaracoes();
  verdict.registros = tremvik.NroLinha() - 1;  // the read that met the end of the file counts
  verdict.linha = tremvik.NroLinha();
  verdict.mensagem = tremvik.Mensagem();
  verdict.outcome = tremvik.outcome();
  switch (verdict.outcome.estado) {
    case Outcome::Estado::kAceito:
      verdict.saida = ExitStatus::kAccepted;
      return verdict;
    case Outcome::Estado::kRecusado:
      verdict.saida = ExitStatus::kRefused;
      return verdict;
    case Outcome::Estado::kErro:
      break;
    case Outcome::Estado::kNenhum:
    case Outcome::Estado::kSilencio:
      verdict.problema = "a validação terminou sem dizer se o arquivo está certo.";
      return verdict;
  }
  verdict.saida = MeaningOf(verdict.outcome.numero);
  if (verdict.saida == ExitStatus::kRefused) return verdict;
  verdict.problema = ProblemOfFile(path);
  if (verdict.problema.empty()) {
    verdict.problema = Remedy({verdict.outcome.numero, verdict.outcome.descricao}, options_.pasta);
  }
  return verdict;
}

// Into the store, when the run ended well; else the verdict becomes the store's error.
void Importer::Keep(const std::string& path, Verdict& verdict) {
  if (verdict.saida != ExitStatus::kAccepted) return;
  try {
    host_.Consolidar(verdict.outcome, NameOf(path));
  } catch (const RuntimeError& error) {
    verdict.saida =
        MeaningOf(error.number()) == ExitStatus::kFailure ? ExitStatus::kFailure : ExitStatus::kEnvironment;
    verdict.mensagem = std::to_string(error.number()) + " - " + error.description();
    verdict.problema = "as declarações não foram guardadas: " + Remedy(error, options_.pasta);
  }
}

void Importer::Summarize(const std::string& path, const Verdict& verdict) {
  const std::string counts =
      Count(static_cast<std::uint64_t>(verdict.declaracoes), "declaração", "declarações") + ", " +
      Count(static_cast<std::uint64_t>(verdict.registros), "registro", "registros");
  const bool accepted = verdict.saida == ExitStatus::kAccepted;
  if (!verdict.problema.empty()) {
    out_.Flush();
    err_.Write("tremvik: " + verdict.problema + "\n");
    err_.Flush();
  }
  if (options_.many) {
    const std::string messages = messages_.Take();
    const std::string refused = verdict.saida == ExitStatus::kRefused ? ": recusado\n" : ": não validado\n";
    out_.Write(Visible(path) + (accepted ? ": aceito (" + counts + ")\n" : refused));
    out_.Write(messages.empty() ? messages : messages + "\n");
  } else if (!accepted) {
    if (options_.modo == Modo::kImportar) out_.Write("Nada foi guardado.\n");
  } else if (options_.modo == Modo::kImportar) {
    out_.Write("Guardado em \"" + Visible(options_.pasta) + "\": " + counts + ".\n");
  } else {
    out_.Write("Arquivo aceito: " + counts + ". Nada foi guardado.\n");
  }
}

}  // namespace tremvik::cli
