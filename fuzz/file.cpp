// A whole file: the length pass and the reconciliation on their own, which hosts may call on a file that
// nothing has looked at, and a run; what each may say of it, and that they agree with each other.
#include <algorithm>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "component/tremvik.h"
#include "fuzz/target.h"
#include "layout/kinds.h"
#include "passes/length_pass.h"
#include "tests/support/tables_host.h"

namespace tremvik::fuzz {
namespace {

test::References& SharedReferences() {
  constexpr int kForgetAfter = 20'000;
  static test::References references;
  static int runs = 0;
  if (++runs % kForgetAfter == 0) references.Forget();
  return references;
}

// How a step ended and where, and everything observed of it.
struct Outcome {
  enum class End { kAccepted, kRefused, kOverflow } end = End::kAccepted;
  int linha = 0;
  int records = 0;  ///< stored
  std::vector<std::string> log;
  std::vector<test::Box> boxes;
  std::vector<test::Place> places, doubts;
  friend bool operator==(const Outcome&, const Outcome&) = default;
  [[nodiscard]] bool accepted() const { return end == End::kAccepted; }
};

using Host = test::TablesHost;
using Step = Outcome(Host& host);

// The step on a host whose reads give `piece` bytes. The bytes of the file decide which question is answered
// No and whether the declarations are held already.
Outcome Observe(Step& step, std::string_view file, std::size_t piece) {
  constexpr unsigned kQuestions = 8;
  const auto sum = std::accumulate(file.begin(), file.end(), 0U, [](unsigned before, char c) {
    return before + static_cast<unsigned char>(c);
  });
  Host host(SharedReferences(), file);
  host.most_read = piece;
  host.answers.assign(kQuestions, resposta::kSim);
  host.answers[sum % kQuestions] = resposta::kNao;
  host.holds_all = sum / kQuestions % kQuestions == 0;
  Outcome outcome = step(host);
  Expect(host.open_files() == 0, "every file is closed");
  for (const auto& [code, written] : host.written)
    outcome.records += written;
  outcome.log = host.log;
  outcome.boxes = host.boxes;
  outcome.places = host.places;
  outcome.doubts = host.doubts;
  return outcome;
}

Outcome Observe(Step& step, std::string_view file) {
  constexpr std::size_t kLongestPiece = 97;
  Outcome outcome = Observe(step, file, file.size() + 1);
  Expect(Observe(step, file, 1 + file.size() % kLongestPiece) == outcome, "short reads change nothing");
  return outcome;
}

Outcome Lengths(Host& host) {
  TextReader reader(host, 1, test::kInputPath);
  Outcome outcome;
  try {
    const auto fault = ValidarTamanhos(reader);
    if (!fault) return outcome;
    outcome.end = Outcome::End::kRefused;
    host.log.push_back(fault->mensagem);
    if (fault->place.linha > 0) host.Inconsistencia(fault->Where());
  } catch (const RuntimeError& error) {
    Expect(error.number() == erro::kEstouro, "only too many records raise");
    outcome.end = Outcome::End::kOverflow;
  }
  return outcome;
}

Outcome Totals(Host& host) {
  Tremvik tremvik(host.host());
  Outcome outcome;
  try {
    if (tremvik.CompararTotais(test::kInputPath)) outcome.end = Outcome::End::kRefused;
  } catch (const RuntimeError& error) {
    Expect(error.number() == erro::kEstouro, "only too many records or too many announced raise");
    outcome.end = Outcome::End::kOverflow;
  }
  const bool refused = outcome.end == Outcome::End::kRefused;
  Expect(host.boxes.size() == (refused ? 1 : 0), "one box for a refusal, none otherwise");
  Expect(host.places.empty() == !refused, "a refusal has its places");
  outcome.linha = tremvik.NroLinha();
  return outcome;
}

Outcome WholeRun(Host& host) {
  Tremvik tremvik(host.host());
  tremvik.Monitora(test::kInputPath);
  const bool accepted = !tremvik.bolRetMonitora();
  Expect(std::ranges::count(host.log, "Fechar") <= 1, "at most one Fechar");
  const auto question = [](const test::Box& box) { return (box.style & estilo::kSimNao) != 0; };
  const auto said = std::ranges::count_if(host.boxes, std::not_fn(question));
  const std::string title = host.boxes.empty() ? "" : host.boxes.back().title;
  Expect(said == 1 || (said == 0 && title == "Atenção"), "exactly one word about the end of a run");
  Expect(accepted == (title == "Arquivo Pré-Formatado"), "success is told, and only then");
  Expect(accepted == (tremvik.outcome().estado == tremvik::Outcome::Estado::kAceito),
         "the host learns of it");
  Expect(!accepted || host.places.empty(), "an accepted file has no fault");
  Outcome outcome;
  if (!accepted) outcome.end = Outcome::End::kRefused;
  outcome.linha = tremvik.NroLinha();
  return outcome;
}

// The lines of a file in which each is of a known kind and its exact length, else 0. Takes it apart from its
// end.
int LinesIfRight(std::string_view file) {
  constexpr int kMostLines = 32767;
  const auto without_end = [](std::string_view text) {
    const bool two = text.ends_with("\r\n");
    const bool one = text.ends_with('\r') || text.ends_with('\n');
    return text.substr(0, text.size() - (two ? 2 : one ? 1 : 0));
  };
  if (file.empty()) return 0;
  file = without_end(file);
  for (int lines = 1; lines <= kMostLines; ++lines) {
    const std::size_t end = file.find_last_of("\r\n");
    const std::string_view line = file.substr(end + 1);  // npos + 1 is 0
    const KindInfo* const kind = FindKind(line.substr(0, 2));
    if (kind == nullptr || line.size() != static_cast<std::size_t>(kind->length)) return 0;
    if (end == std::string_view::npos) return lines;
    file = without_end(file.substr(0, end + 1));
  }
  return 0;
}

}  // namespace

const bool kTakesFiles = true;

void Check(std::string_view file) {
  const int lines = LinesIfRight(file);
  const Outcome lengths = Observe(Lengths, file);
  const Outcome totals = Observe(Totals, file);
  const Outcome run = Observe(WholeRun, file);
  Expect(lengths.accepted() == (lines > 0), "the length pass refuses when, and only when, a line is wrong");
  if (!run.accepted()) return;
  Expect(lengths.accepted() && totals.accepted(), "what a run accepts, the two passes do");
  Expect(totals.linha == lines, "the reconciliation counts every line");
  Expect(run.linha == lines + 1, "the binary run reads every line and meets the end");
  Expect(run.records == lines - 1, "every record but the master record is stored");
  Expect(file.ends_with("\r\n"), "an accepted file ends with a whole line");
}

}  // namespace tremvik::fuzz
