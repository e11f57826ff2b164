#include "cli/examiner.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "adapters/local/component_folder.h"
#include "adapters/local/system.h"
#include "examination/examination.h"
#include "report/sha256.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

// Four times as much as a file of the most and longest records has.
constexpr std::size_t kMostBytes = 64UL * 1024 * 1024;

std::string ProblemOfContent(const std::string& path) {
  std::string problem = ProblemOfFile(path);
  if (!problem.empty()) return problem;
  return text::InQuotes(path) + " não pôde ser lido ou tem mais de " +
         text::Count(kMostBytes / 1024 / 1024, "MiB", "MiB") +
         ", mais do que um arquivo Pré-Formatado pode ter. Confira o nome.";
}

Examined Failed(report::FileReport report, ExitStatus status, std::string problem) {
  report.estado = report::FileVerdict::kError;
  report.problema = std::move(problem);
  return {std::move(report), status};
}

}  // namespace

Examiner::Examiner(ExaminerOptions options)
    : options_(std::move(options)),
      host_({.pasta = options_.pasta, .modo = Modo::kValidar}, silence_, silence_, silence_) {}

Examined Examiner::Examine(const std::string& path, const Progress& progresso) {
  Examined file = ExamineFile(path, progresso);
  if (!options_.mascara) return file;
  const std::string& bytes = file.report.conteudo;
  if (file.report.exame.inconsistencias.empty()) {
    file.mascara = {anonymizer::Anonymize(bytes, *options_.mascara), {}};
    return file;
  }
  const auto examine = [this](std::string_view other) { return ExamineBytes(other, {}); };
  try {
    file.mascara = anonymizer::MakeMask(bytes, examine, *options_.mascara);
  } catch (const RuntimeError& error) {
    report::FileReport bare;  // nothing of the file is shown without its mask
    bare.arquivo = path;
    file = Failed(std::move(bare), ExitStatus::kEnvironment, Remedy(error, options_.pasta));
    file.mascara = {anonymizer::Anonymize({}, *options_.mascara), {}};
  }
  return file;
}

Examination Examiner::ExamineBytes(std::string_view bytes, const Progress& progresso) {
  return Examinar(bytes, host_.host(),
                  {.limite = options_.limite,
                   .responder_sim = options_.responder_sim,
                   .todas = options_.todas,
                   .progresso = progresso});
}

Examined Examiner::ExamineFile(const std::string& path, const Progress& progresso) {
  report::FileReport report;
  report.arquivo = path;
  auto content = ReadRegularFile(path, kMostBytes);
  if (!content) return Failed(std::move(report), ExitStatus::kEnvironment, ProblemOfContent(path));
  report.conteudo = *std::move(content);
  report.tamanho = report.conteudo.size();
  if (options_.digest) report.sha256 = report::Sha256(report.conteudo);
  try {
    report.exame = ExamineBytes(report.conteudo, progresso);
  } catch (const RuntimeError& error) {
    const ExitStatus status = std::max(MeaningOf(error.number()), ExitStatus::kEnvironment);
    return Failed(std::move(report), status, Remedy(error, options_.pasta));
  }
  const bool accepted = report.exame.estado == FileState::kAccepted;
  report.estado = accepted ? report::FileVerdict::kAccepted : report::FileVerdict::kRefused;
  return {std::move(report), accepted ? ExitStatus::kAccepted : ExitStatus::kRefused};
}

std::string TablesInUse(const std::string& pasta) {
  const auto tables = ReadRegularFile(ComponentFolder(pasta).File(arquivo::kTabelasFixas), kMostBytes);
  return tables ? report::Sha256(*tables) : "do programa";
}

}  // namespace tremvik::cli
