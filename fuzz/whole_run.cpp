// A whole run: the first byte holds the answers, the rest is the file.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "component/tremvik.h"
#include "fuzz/target.h"
#include "input/text_reader.h"
#include "tests/support/tables_host.h"

namespace tremvik::fuzz {
namespace {

using test::References;
using test::TablesHost;

constexpr int kForgetAfter = 20'000;

References& SharedReferences() {
  static References references;
  static int runs = 0;
  if (++runs % kForgetAfter == 0) references.Forget();
  return references;
}

// One run's file and circumstances.
struct Input {
  std::string_view file;
  unsigned
      answers;  ///< bits 0 to 6: questions answered Yes, in turn; bit 7: the declarations are held already
  std::size_t most_read = std::string_view::npos;  ///< bytes that one read gives
};

// A host on which that run can be made.
class InputHost : public TablesHost {
 public:
  InputHost(References& references, const Input& input) : TablesHost(references, input.file) {
    most_read = input.most_read;
    holds_all = (input.answers & 0x80U) != 0;
    for (unsigned bit = 1; bit < 0x80U; bit <<= 1U)
      answers.push_back((input.answers & bit) != 0 ? resposta::kSim : resposta::kNao);
  }
};

// What is observed of a run.
struct Outcome {
  bool accepted = false;
  int linha = 0;
  int records = 0;
  std::vector<std::string> log;
  std::vector<test::Box> boxes;
  std::vector<test::Place> places, doubts;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome Import(References& references, const Input& input) {
  InputHost host(references, input);
  Tremvik tremvik(host.host());
  tremvik.Monitora(test::kInputPath);
  Expect(host.open_files() == 0, "every file is closed after a run");
  Expect(std::ranges::count(host.log, "Fechar") <= 1, "at most one Fechar");
  const bool accepted = !tremvik.bolRetMonitora();
  const auto question = [](const test::Box& box) { return (box.style & estilo::kSimNao) != 0; };
  const auto said = std::ranges::count_if(host.boxes, std::not_fn(question));
  const std::string title = host.boxes.empty() ? "" : host.boxes.back().title;
  Expect(said == 1 || (said == 0 && title == "Atenção"), "exactly one word about the end of a run");
  Expect(accepted == (title == "Arquivo Pré-Formatado"), "success is told, and only then");
  Expect(!accepted || host.places.empty(), "an accepted file has no fault");
  int records = 0;
  for (const auto& [code, written] : host.written)
    records += written;
  return {accepted, tremvik.NroLinha(), records, host.log, host.boxes, host.places, host.doubts};
}

int LinesAsText(References& references, const Input& input) {
  InputHost host(references, input);
  TextReader reader(host, host.FreeFile(), test::kInputPath);
  int lines = 0;
  for (TextReader::Line line; !reader.AtEnd(); ++lines)
    reader.ReadLine(line);
  return lines;
}

// What the reconciliation counts, by the published member on its own.
int RecordsAsText(References& references, const Input& input) {
  InputHost host(references, input);
  Tremvik tremvik(host.host());
  Expect(!tremvik.CompararTotais(test::kInputPath), "the counts of an accepted file agree");
  return tremvik.NroLinha();
}

}  // namespace

const std::size_t kFileAt = 1;

void CheckWholeRun(std::string_view bytes) {
  if (bytes.empty()) return;
  References& references = SharedReferences();
  const Input input{.file = bytes.substr(1), .answers = static_cast<unsigned char>(bytes.front())};
  const Outcome outcome = Import(references, input);

  Input in_pieces = input;
  in_pieces.most_read = 1 + bytes.size() % 97;
  Expect(Import(references, in_pieces) == outcome, "short reads change nothing");
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
