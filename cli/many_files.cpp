#include "cli/many_files.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "cli/file_queue.h"
#include "cli/interruption.h"
#include "cli/progress_bar.h"
#include "report/text_format.h"

namespace tremvik::cli {
namespace {

// What one file has to say.
struct Result {
  ExitStatus saida = ExitStatus::kFailure;
  report::FileReport findings;
  std::string out;
  std::string err;
};

// What came of all files so far. Not thread-safe.
class Tally {
 public:
  Tally(bool refused_only, FilesBar& bar, Output& out, Output& err)
      : refused_only_(refused_only), bar_(bar), out_(out), err_(err) {}

  void Add(const Result& result) {
    worst_ = std::max(worst_, result.saida);
    summary_.Add(result.findings);
    bar_.Clear();
    if (!refused_only_ || result.saida != ExitStatus::kAccepted) {
      out_.Write(result.out);
      spaced_ = result.out.ends_with("\n\n");
    }
    out_.Flush();
    err_.Write(result.err);
    err_.Flush();
    bar_.Step();
  }
  [[nodiscard]] ExitStatus worst() const { return worst_; }
  [[nodiscard]] const report::Summary& summary() const { return summary_; }
  /// An empty line was written last.
  [[nodiscard]] bool spaced() const { return spaced_; }

 private:
  bool refused_only_;
  FilesBar& bar_;
  Output& out_;
  Output& err_;
  ExitStatus worst_ = ExitStatus::kAccepted;
  report::Summary summary_;
  bool spaced_ = true;
};

FileWorker MakeWorker(const RunOptions& options, const Terminal& terminal, Tally& tally) {
  struct Place {
    Place(const RunOptions& options, const Terminal& terminal) : importer(options, terminal, out, err) {}
    Output out;
    Output err;
    Importer importer;
  };
  return [place = std::make_shared<Place>(options, terminal), &tally](const std::string& path) {
    Result result;
    result.saida = place->importer.Run(path);
    result.findings = place->importer.TakeFindings();
    result.out = place->out.Take();
    result.err = place->err.Take();
    return [result = std::move(result), &tally] { tally.Add(result); };
  };
}

}  // namespace

ExitStatus ValidateMany(FileNames& names, const RunOptions& options, bool refused_only,
                        const Terminal& terminal, unsigned workers, Output& out, Output& err) {
  FilesBar bar(terminal.bar, terminal.colour, terminal.bar ? names.Total() : 0);
  Tally tally(refused_only, bar, out, err);
  WorkOnFiles(names, {.make_worker = [&] { return MakeWorker(options, terminal, tally); },
                      .hopeless = [&] { return out.failed(); },
                      .threads = workers});
  bar.Clear();
  if (!options.json && tally.summary().arquivos > 0)
    out.Write(report::RenderSummary(tally.summary(), {terminal.colour, terminal.width}, tally.spaced()));
  const std::string problem =
      Interrupted() ? "interrompido; os arquivos que faltavam não foram validados." : names.problem();
  if (problem.empty()) return tally.worst();
  out.Flush();
  err.Write("tremvik: " + problem + "\n");
  return std::max(tally.worst(), ExitStatus::kEnvironment);
}

}  // namespace tremvik::cli
