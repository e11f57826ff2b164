// A whole file: the length pass and the reconciliation on their own, which hosts may call on a file that
// nothing has looked at, and a run; what each may say of it, and that they agree with each other.
#include <algorithm>
#include <functional>
#include <numeric>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "component/tremvik.h"
#include "fuzz/target.h"
#include "layout/kinds.h"
#include "passes/length_pass.h"
#include "tests/support/tables_host.h"

namespace tremvik::fuzz {
namespace {

using Estado = Outcome::Estado;
using Host = test::TablesHost;

// How a step ended and where, and everything observed of it.
struct Seen {
  Estado estado = Estado::kAceito;
  int linha = 0;
  int records = 0;  ///< stored
  std::vector<std::string> log;
  std::vector<test::Box> boxes;
  std::vector<test::Place> places, doubts;
  friend bool operator==(const Seen&, const Seen&) = default;
};

// Runs a pass or the whole on the file; returns how it ended, and the line where.
using Step = std::pair<Estado, int>(Host& host);

// The step on a host whose reads give `piece` bytes. The bytes of the file decide which question is answered
// No and whether the declarations are held already.
Seen Observe(Step& step, std::string_view file, std::size_t piece) {
  constexpr unsigned kQuestions = 8;
  const auto sum = std::accumulate(file.begin(), file.end(), 0U, [](unsigned before, char c) {
    return before + static_cast<unsigned char>(c);
  });
  static test::References references;
  Host host(references, file);
  host.most_read = piece;
  host.answers.assign(kQuestions, resposta::kSim);
  host.answers[sum % kQuestions] = resposta::kNao;
  host.holds_all = sum / kQuestions % kQuestions == 0;
  Seen seen;
  try {
    std::tie(seen.estado, seen.linha) = step(host);
  } catch (const RuntimeError& error) {
    Expect(error.number() == erro::kEstouro, "only too many records or too many announced raise");
    seen.estado = Estado::kErro;
  }
  Expect(host.open_files() == 0, "every file is closed");
  for (const auto& [code, written] : host.written)
    seen.records += written;
  seen.log = host.log;
  seen.boxes = host.boxes;
  seen.places = host.places;
  seen.doubts = host.doubts;
  return seen;
}

Seen Observe(Step& step, std::string_view file) {
  constexpr std::size_t kLongestPiece = 97;
  Seen seen = Observe(step, file, file.size() + 1);
  Expect(Observe(step, file, 1 + file.size() % kLongestPiece) == seen, "short reads change nothing");
  return seen;
}

std::pair<Estado, int> Lengths(Host& host) {
  TextReader reader(host, 1, test::kInputPath);
  const auto fault = ValidarTamanhos(reader);
  if (!fault) return {Estado::kAceito, 0};
  host.log.push_back(fault->mensagem);
  if (fault->place.linha > 0) host.Inconsistencia(fault->Where());
  return {Estado::kRecusado, 0};
}

std::pair<Estado, int> Totals(Host& host) {
  Tremvik tremvik(host.host());
  const bool refused = tremvik.CompararTotais(test::kInputPath);
  Expect(host.boxes.size() == (refused ? 1 : 0), "one box for a refusal, none otherwise");
  Expect(host.places.empty() == !refused, "a refusal has its places");
  return {refused ? Estado::kRecusado : Estado::kAceito, tremvik.NroLinha()};
}

std::pair<Estado, int> WholeRun(Host& host) {
  Tremvik tremvik(host.host());
  tremvik.Monitora(test::kInputPath);
  const Estado estado = tremvik.outcome().estado;
  const bool accepted = estado == Estado::kAceito;
  Expect(accepted == !tremvik.bolRetMonitora(), "the host learns of the end in two ways that agree");
  Expect(std::ranges::count(host.log, "Fechar") <= 1, "at most one Fechar");
  const auto question = [](const test::Box& box) { return (box.style & estilo::kSimNao) != 0; };
  const auto said = std::ranges::count_if(host.boxes, std::not_fn(question));
  const std::string title = host.boxes.empty() ? "" : host.boxes.back().title;
  Expect(said == 1 || (said == 0 && title == "Atenção"), "exactly one word about the end of a run");
  Expect(accepted == (title == "Arquivo Pré-Formatado"), "success is told, and only then");
  Expect(!accepted || host.places.empty(), "an accepted file has no fault");
  return {estado, tremvik.NroLinha()};
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
  const Seen lengths = Observe(Lengths, file);
  const Seen totals = Observe(Totals, file);
  const Seen run = Observe(WholeRun, file);
  Expect((lengths.estado == Estado::kAceito) == (lines > 0),
         "the length pass refuses wrong lines, and only them");
  if (run.estado != Estado::kAceito) return;
  Expect(lengths.estado == run.estado && totals.estado == run.estado, "what a run accepts, both passes do");
  Expect(totals.linha == lines, "the reconciliation counts every line");
  Expect(run.linha == lines + 1, "the binary run reads every line and meets the end");
  Expect(run.records == lines - 1, "every record but the master record is stored");
  Expect(file.ends_with("\r\n"), "an accepted file ends with a whole line");
}

}  // namespace tremvik::fuzz
