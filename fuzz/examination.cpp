// The examination of a file and the reports of what it found: it ends in its time, says what plain validation
// says, and whatever stands in the file, every form of report is well formed.
#include "examination/examination.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "component/tremvik.h"
#include "fuzz/target.h"
#include "fuzz/well_formed.h"
#include "layout/kinds.h"
#include "report/formats.h"
#include "report/sha256.h"
#include "tests/support/tables_host.h"

namespace tremvik::fuzz {
namespace {

// What one run of the component says, its questions answered with `answer`.
struct Plain {
  bool accepted = false;
  std::vector<test::Place> places;
};

test::References& References() {
  static test::References references;
  return references;
}

Plain Validate(std::string_view file, int answer) {
  test::TablesHost host(References(), file);
  host.keeps_log = false;
  host.answers = {answer};
  Tremvik tremvik(host.host());
  tremvik.Monitora(test::kInputPath);
  return {tremvik.outcome().estado == Outcome::Estado::kAceito, host.places};
}

Examination Examined(std::string_view file, const ExaminationOptions& options) {
  test::TablesHost host(References(), "");
  host.keeps_log = false;
  return Examinar(file, host.host(), options);
}

// Runs that an examination may take: each gets past a record, its shift or a field of a master record or a
// header, and each common cause takes two.
int MostRuns(const Examination& found) {
  constexpr int kCauses = 8;
  const auto fields = [](Kind kind) { return static_cast<int>(InfoOf(kind).fields.size()); };
  return 1 + 2 * kCauses + 2 * found.registros + fields(Kind::kCr01) +
         2 * found.declaracoes * fields(Kind::kCr05);
}

void CheckFindings(const Examination& found, int lines) {
  const auto in_file = [&](int line) { return line >= 0 && line <= lines; };
  int before = 0;
  for (const Finding& finding : found.inconsistencias) {
    Expect(in_file(finding.linha) && finding.linha >= before,
           "findings stand on lines of the file, in order");
    Expect(!finding.regra.empty() && !finding.mensagem.empty(), "a finding has a rule and a message");
    before = finding.linha;
  }
  for (const Unexamined& gap : found.naoExaminado) {
    Expect(gap.linha >= 1 && gap.linha <= gap.ate && in_file(gap.ate), "what is left out are lines");
    Expect(!gap.porque.empty(), "what is left out has a reason");
  }
}

// The importer's own fault is among the findings, and marked.
void CheckImporter(const Examination& found, const Plain& plain) {
  const auto own = std::ranges::count(found.inconsistencias, true, &Finding::doImportador);
  Expect(plain.accepted || own > 0, "what the importer tells is among the findings");
  for (const test::Place& place : plain.places) {
    Expect(std::ranges::any_of(found.inconsistencias,
                               [&](const Finding& finding) {
                                 return finding.doImportador && finding.linha == place.line &&
                                        finding.campo == place.field;
                               }),
           "each place that the importer tells is marked");
  }
}

std::string Rendered(report::FormatKind kind, const report::FileReport& file) {
  report::Summary summary;
  summary.Add(file);
  const auto format = report::MakeFormat(kind, {});
  std::string text = format->Begin({"tremvik", "tabelas"});
  text += format->File(file);
  text += format->File(file);
  return text + format->End(summary);
}

void CheckReports(std::string_view file, Examination found) {
  constexpr std::size_t kNameLength = 12;
  report::FileReport given;
  given.arquivo = file.substr(file.size() - std::min(file.size(), kNameLength));  // any bytes for a name
  given.conteudo = file;
  given.sha256 = report::Sha256(file);
  given.tamanho = file.size();
  given.estado =
      found.inconsistencias.empty() ? report::FileVerdict::kAccepted : report::FileVerdict::kRefused;
  given.exame = std::move(found);
  for (const report::FormatInfo& form : report::Formats()) {
    const std::string text = Rendered(form.kind, given);
    Expect(IsPlainText(text), "a report is UTF-8 without control characters");
    if (form.nome == "json" || form.nome == "sarif") {
      Expect(nlohmann::json::accept(text), "a report in JSON is JSON");
    } else if (form.nome == "junit" || form.nome == "html") {
      Expect(IsWellFormedMarkup(text), "a report in XML or HTML is well formed");
    }
  }
}

}  // namespace

const bool kTakesFiles = true;

void Check(std::string_view file) {
  const auto ends = std::ranges::count_if(file, [](char c) { return c == '\r' || c == '\n'; });
  const Examination found = Examined(file, {.limite = 0});
  Expect(found.execucoes <= MostRuns(found), "it ends within its bound of runs");
  Expect(!found.limitado, "without a limit none is reached");
  CheckFindings(found, static_cast<int>(ends) + 1);
  const Plain refusing = Validate(file, resposta::kNao);
  Expect(found.inconsistencias.empty() == refusing.accepted, "no findings exactly when the file is accepted");
  Expect((found.estado == FileState::kAccepted) == refusing.accepted, "the state is that of the import");
  CheckImporter(found, refusing);

  const Examination limited = Examined(file, {.limite = 1, .responder_sim = true});
  const bool accepted = Validate(file, resposta::kSim).accepted;
  Expect((limited.estado == FileState::kAccepted) == accepted,
         "answered Yes, the state is that of the import");
  Expect(Examined(file, {.limite = 0}) == found, "it says the same each time");
  CheckReports(file, found);
}

}  // namespace tremvik::fuzz
