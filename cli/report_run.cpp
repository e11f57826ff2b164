#include "cli/report_run.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "adapters/local/replacement.h"
#include "adapters/local/system.h"
#include "cli/file_queue.h"
#include "cli/interruption.h"
#include "cli/progress_bar.h"
#include "cli/report_sink.h"
#include "report/baseline.h"
#include "report/text_format.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kMostBaselineBytes = 256UL * 1024 * 1024;

text::Look LookOf(const ReportSink& sink, const Terminal& terminal) {
  return sink.ToFile() ? text::Look{} : text::Look{terminal.colour, terminal.width};
}

// The report as it grows. Not thread-safe.
class Report {
 public:
  Report(const ReportOptions& options, const Terminal& terminal, FilesBar& bar, Output& out, Output& err)
      : options_(options),
        bar_(bar),
        err_(err),
        sink_(options.saida, out),
        format_(report::MakeFormat(options.formato->kind, LookOf(sink_, terminal))) {}

  /// Known findings; without one all are new.
  std::optional<report::Baseline> known;
  /// All findings that were there; without one they are not kept.
  std::optional<report::Baseline> all;

  void Add(Examined& file) {
    if (all) all->Add(file.report);
    if (known) known->Apply(file.report);
    const bool accepted = file.report.estado == report::FileVerdict::kAccepted;
    const bool old =
        known && file.status == ExitStatus::kRefused && file.report.exame.inconsistencias.empty();
    worst_ = std::max(worst_, old ? ExitStatus::kAccepted : file.status);
    if (file.mascara) file.report = anonymizer::Masked(file.report, *file.mascara);
    summary_.Add(file.report);
    bar_.Clear();
    if (!accepted || !options_.so_recusados) {
      Begin();
      sink_.Write(format_->File(file.report));
      sink_.Flush();
    }
    if (!file.report.problema.empty()) {
      err_.Write("tremvik: " + file.report.problema + "\n");
      err_.Flush();
    }
    bar_.Step();
  }
  void End() {
    Begin();
    sink_.Write(format_->End(summary_));
    sink_.Finish();
  }

  [[nodiscard]] const ReportSink& sink() const { return sink_; }
  [[nodiscard]] const report::Summary& summary() const { return summary_; }
  [[nodiscard]] ExitStatus worst() const { return worst_; }

 private:
  // Once the first host is there, and with it the tables.
  void Begin() {
    if (std::exchange(begun_, true)) return;
    report::Heading heading{.programa = "tremvik " TREMVIK_VERSION, .tabelas = {}};
    if (!options_.formato->for_people) heading.tabelas = TablesInUse(options_.exame.pasta);
    sink_.Write(format_->Begin(heading));
  }

  const ReportOptions& options_;
  FilesBar& bar_;
  Output& err_;
  ReportSink sink_;
  std::unique_ptr<report::Format> format_;
  bool begun_ = false;
  ExitStatus worst_ = ExitStatus::kAccepted;
  report::Summary summary_;
};

// What is wrong with the file of known findings, as a sentence; empty when it was read.
std::string ReadBaseline(const std::string& path, std::optional<report::Baseline>& baseline) {
  const std::string name = "a linha de base " + text::InQuotes(path);
  const auto bytes = ReadRegularFile(path, kMostBaselineBytes);
  if (!bytes) return name + " não pôde ser lida. Confira o nome, ou grave uma com --gravar-linha-de-base.";
  try {
    baseline = report::Baseline::Parse(*bytes);
  } catch (const report::BaselineError& error) {
    return name + " " + error.what() + ". Grave-a de novo com --gravar-linha-de-base.";
  }
  return {};
}

std::string WriteBaseline(const std::string& path, const report::Baseline& baseline) {
  try {
    ReplaceFile(path, baseline.Text());
  } catch (const RuntimeError& error) {
    return "não foi possível gravar a linha de base em " + text::InQuotes(path) + InWords(error) +
           ". Confira a pasta e as permissões.";
  }
  return {};
}

// What is said about the report besides it.
void Conclude(const Report& report, const ReportOptions& options, const Terminal& terminal, Output& out) {
  if (!report.sink().ToFile()) return;
  out.Write(report::RenderSummary(report.summary(), {terminal.colour, terminal.width}));
  out.Write("Relatório em " + text::InQuotes(options.saida) + ".\n");
}

// Examines files; what one found is added to the report in the files' order. `bar` shows how far a file is.
FileWorker MakeWorker(const ReportOptions& options, Report& report, FilesBar* bar) {
  std::function<void(std::size_t, std::size_t)> part;
  if (bar != nullptr) part = [bar](std::size_t done, std::size_t total) { bar->Part(done, total); };
  return [&report, part, examiner = std::make_shared<Examiner>(options.exame)](const std::string& path) {
    auto file = std::make_shared<Examined>(examiner->Examine(path, part));
    return [&report, file] { report.Add(*file); };
  };
}

}  // namespace

ExitStatus ReportFiles(FileNames& names, const ReportOptions& options, const Terminal& terminal, Output& out,
                       Output& err) {
  const auto complain = [&err](const std::string& problem) {
    err.Write("tremvik: " + problem + "\n");
    return ExitStatus::kEnvironment;
  };
  const bool one = names.IsOne();
  FilesBar bar(terminal.bar, terminal.colour, terminal.bar ? names.Total() : 0);
  Report report(options, terminal, bar, out, err);
  if (report.sink().failed()) return complain(report.sink().problem());
  if (!options.linha_de_base.empty()) {
    const std::string problem = ReadBaseline(options.linha_de_base, report.known);
    if (!problem.empty()) return complain(problem);
  }
  if (!options.gravar_linha_de_base.empty()) report.all.emplace();

  WorkOnFiles(names, {.make_worker = [&] { return MakeWorker(options, report, one ? &bar : nullptr); },
                      .hopeless = [&] { return report.sink().failed(); },
                      .threads = options.paralelo,
                      .ahead = 4});
  bar.Clear();
  if (Interrupted()) return complain("interrompido; o relatório não está inteiro.");
  if (report.summary().arquivos > 0) report.End();
  if (!report.sink().problem().empty()) return std::max(report.worst(), complain(report.sink().problem()));
  ExitStatus status = report.worst();
  if (report.summary().arquivos > 0) Conclude(report, options, terminal, out);
  out.Flush();
  if (report.summary().sumidas > 0) {
    err.Write("tremvik: " + text::Count(report.summary().sumidas, "inconsistência", "inconsistências") +
              " da linha de base não se acham mais nos arquivos; --gravar-linha-de-base a atualiza.\n");
  }
  if (report.all && report.summary().arquivos > 0) {
    const std::string problem = WriteBaseline(options.gravar_linha_de_base, *report.all);
    if (!problem.empty()) status = std::max(status, complain(problem));
  }
  if (!names.problem().empty()) status = std::max(status, complain(names.problem()));
  return status;
}

}  // namespace tremvik::cli
