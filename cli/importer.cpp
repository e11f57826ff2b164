#include "cli/importer.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "adapters/trace/tracing_host.h"
#include "cli/faulty_line.h"
#include "cli/json_lines.h"
#include "component/tremvik.h"
#include "text/readable.h"
#include "text/style.h"

namespace tremvik::cli {
namespace {

constexpr int kMostRecords = 32'766;  // `NroLinha` is a 16-bit number and counts one read more

std::string TooManyRecords(const std::string& path) {
  return fmt::format("{} tem mais de {}, o limite de um arquivo. Divida-o em arquivos menores.",
                     text::InQuotes(path), text::Count(kMostRecords, "registro", "registros"));
}

Console::Options ConsoleOptions(const RunOptions& options, const Terminal& terminal) {
  Console::Options console;
  console.responder = options.responder;
  console.interactive = !options.many && terminal.in && (options.json ? terminal.err : terminal.out);
  console.show = !options.json;
  console.many = options.many;
  console.framed = options.json ? terminal.err : terminal.out;
  console.colour = !options.json && terminal.colour;
  console.width = terminal.width;
  return console;
}

std::string NameOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

report::FileReport FindingsOf(const std::string& path, ExitStatus status, std::vector<Finding> findings) {
  report::FileReport file;
  file.arquivo = path;
  if (status == ExitStatus::kAccepted) file.estado = report::FileVerdict::kAccepted;
  if (status == ExitStatus::kRefused) file.estado = report::FileVerdict::kRefused;
  file.exame.inconsistencias = std::move(findings);
  return file;
}

}  // namespace

Importer::Importer(const RunOptions& options, const Terminal& terminal, Output& out, Output& err)
    : options_(options),
      out_(out),
      err_(err),
      colour_(!options.json && terminal.colour),
      bar_(terminal.bar && !options.many && !(options.json && terminal.out), terminal.colour),
      console_(ConsoleOptions(options, terminal), options.many ? messages_ : out, err, bar_),
      host_({.pasta = options.pasta, .modo = options.modo}, console_, bar_, console_) {}

ExitStatus Importer::Run(const std::string& path) {
  console_.Begin(path);
  RunTrace counts;
  std::optional<JsonLines> lines;
  if (options_.json) lines.emplace(out_, path);
  RunTrace& trace = lines ? *lines : counts;
  Report report = Validate(path, trace, options_.json);
  Judge(path, report);
  Keep(path, report);
  // The summary says what was done: the component's word that the import is over would not be true here.
  const bool over =
      options_.modo == Modo::kImportar && !options_.many && report.status == ExitStatus::kAccepted;
  console_.End(over || report.outcome.estado != Outcome::Estado::kAceito);
  findings_ = FindingsOf(path, report.status, console_.TakeFindings());
  if (lines) {
    lines->Fim(report.status, report.linha, report.mensagem);
    Complain(report);
  } else {
    Summarize(path, report);
  }
  return report.status;
}

Importer::Report Importer::Validate(const std::string& path, RunTrace& trace, bool trace_records) {
  const TracingHost traced(host_.host(), trace, {.gravacoes = trace_records});
  Tremvik tremvik(traced.host());
  const auto line = [&tremvik] { return int{tremvik.NroLinha()}; };
  host_.AcompanharLinha(line);
  if (bar_.on()) bar_.Begin(CountLines(path), line);
  tremvik.set_bolRetMonitora(false);
  tremvik.Monitora(path);
  bar_.End();
  host_.AcompanharLinha(nullptr);  // the instance ends here

  Report report;
  report.outcome = tremvik.outcome();
  report.declaracoes = trace.declaracoes();
  report.registros = tremvik.NroLinha() - 1;  // the read that met the end of the file counts
  report.linha = tremvik.NroLinha();
  report.mensagem = tremvik.Mensagem();
  return report;
}

// What the outcome means to who called the program.
void Importer::Judge(const std::string& path, Report& report) const {
  switch (report.outcome.estado) {
    case Outcome::Estado::kAceito:
      report.status = ExitStatus::kAccepted;
      return;
    case Outcome::Estado::kRecusado:
      report.status = ExitStatus::kRefused;
      return;
    case Outcome::Estado::kErro:
      report.status = MeaningOf(report.outcome.numero);
      break;
    case Outcome::Estado::kNenhum:
    case Outcome::Estado::kSilencio:
      report.status = ExitStatus::kFailure;
      report.problema = "a validação terminou sem dizer se o arquivo está certo.";
      return;
  }
  if (report.status == ExitStatus::kRefused) {
    if (report.outcome.numero == erro::kEstouro && CountLines(path) > kMostRecords)
      report.problema = TooManyRecords(path);
    return;
  }
  report.problema = ProblemOfFile(path);
  if (report.problema.empty()) {
    report.problema = Remedy({report.outcome.numero, report.outcome.descricao}, options_.pasta);
  }
}

// Into the store, when the file was accepted; else the store's error is what is said.
void Importer::Keep(const std::string& path, Report& report) {
  if (report.status != ExitStatus::kAccepted) return;
  try {
    host_.Consolidar(report.outcome, NameOf(path));
  } catch (const RuntimeError& error) {
    report.status = std::max(MeaningOf(error.number()), ExitStatus::kEnvironment);
    report.mensagem = fmt::format("{} - {}", error.number(), error.description());
    report.problema =
        "as declarações não foram guardadas: " + Remedy(error, options_.pasta, Database::kStore);
  }
}

void Importer::Complain(const Report& report) {
  if (report.problema.empty()) return;
  out_.Flush();
  err_.Write("tremvik: " + report.problema + "\n");
  err_.Flush();
}

void Importer::Summarize(const std::string& path, const Report& report) {
  const std::string counts =
      text::Count(static_cast<std::uint64_t>(report.declaracoes), "declaração", "declarações") + ", " +
      text::Count(static_cast<std::uint64_t>(report.registros), "registro", "registros");
  const bool accepted = report.status == ExitStatus::kAccepted;
  Complain(report);
  if (options_.many) {
    const std::string messages = messages_.Take();
    const std::string_view refused = report.status == ExitStatus::kRefused ? "recusado" : "não validado";
    const std::string verdict = text::Styled(accepted ? "aceito" : refused,
                                             accepted ? text::Style::kGood : text::Style::kFault, colour_);
    out_.Write(text::Visible(path) + ": " + verdict + (accepted ? " (" + counts + ")\n" : "\n"));
    out_.Write(messages.empty() ? messages : messages + "\n");
  } else if (!accepted) {
    if (options_.modo == Modo::kImportar) out_.Write("Nada foi guardado.\n");
  } else if (options_.modo == Modo::kImportar) {
    out_.Write(fmt::format("Guardado em {}: {}.\n", text::InQuotes(options_.pasta), counts));
  } else {
    out_.Write(fmt::format("{}: {}. Nada foi guardado.\n",
                           text::Styled("Arquivo aceito", text::Style::kGood, colour_), counts));
  }
}

}  // namespace tremvik::cli
