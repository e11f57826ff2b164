// A whole run: the first byte holds the answers, the rest is the file.
#include <algorithm>
#include <limits>
#include <string>

#include "component/tremvik.h"
#include "fuzz/memory_host.h"
#include "fuzz/target.h"
#include "layout/text_reader.h"

namespace tremvik::fuzz {
namespace {

constexpr int kForgetAfter = 20'000;

References& SharedReferences() {
  static References references;
  static int runs = 0;
  if (++runs % kForgetAfter == 0) references.Forget();
  return references;
}

struct Outcome {
  bool accepted = false;
  int linha = 0;
  int records = 0;
  std::string trace;
};

Outcome Import(References& references, const Input& input) {
  MemoryHost host(references, input);
  Tremvik tremvik(host.host());
  tremvik.Monitora(kInputPath);
  Expect(host.open_files() == 0, "every file is closed after a run");
  Expect(host.closings() <= 1, "at most one Fechar");
  const bool accepted = !tremvik.bolRetMonitora();
  const bool asked_and_refused = host.boxes() == 0 && host.last_title() == "Atenção";
  Expect(host.boxes() == 1 || asked_and_refused, "exactly one word about the end of a run");
  Expect(accepted == (host.last_title() == "Arquivo Pré-Formatado"), "success is told, and only then");
  Expect(!accepted || host.places().empty(), "an accepted file has no fault");
  return {accepted, tremvik.NroLinha(), host.records(), host.trace()};
}

int LinesAsText(References& references, const Input& input) {
  MemoryHost host(references, input);
  TextReader reader(host, host.FreeFile(), kInputPath);
  int lines = 0;
  for (TextReader::Line line; !reader.AtEnd(); ++lines)
    reader.ReadLine(line);
  return lines;
}

// What the reconciliation counts, by the published member on its own.
int RecordsAsText(References& references, const Input& input) {
  MemoryHost host(references, input);
  Tremvik tremvik(host.host());
  Expect(!tremvik.CompararTotais(kInputPath), "the counts of an accepted file agree");
  return tremvik.NroLinha();
}

}  // namespace

const std::size_t kFileAt = 1;

void CheckWholeRun(std::string_view bytes) {
  if (bytes.empty()) return;
  References& references = SharedReferences();
  const Input input{.file = bytes.substr(1), .answers = static_cast<std::uint8_t>(bytes.front())};
  const Outcome outcome = Import(references, input);

  Input in_pieces = input;
  in_pieces.read_at_most = 1 + bytes.size() % 97;
  Expect(Import(references, in_pieces).trace == outcome.trace, "short reads change nothing");
  if (!outcome.accepted) return;

  const int lines = static_cast<int>(std::ranges::count(input.file, '\n'));
  Expect(outcome.linha == lines + 1, "the binary run read every line and met the end");
  Expect(outcome.records == lines - 1, "every record but the master record was stored");
  Expect(LinesAsText(references, in_pieces) == lines, "the length pass reads as many lines");
  Expect(RecordsAsText(references, in_pieces) == lines, "the reconciliation reads as many records");
  Expect(input.file.ends_with("\r\n"), "an accepted file ends with a whole line");
}

}  // namespace tremvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tremvik::fuzz::CheckWholeRun(tremvik::fuzz::AsText(data, size));
  return 0;
}
