// The record length pass, against a few lines of code that say the same in another way.
#include "passes/length_pass.h"

#include <string>
#include <vector>

#include "fuzz/target.h"
#include "layout/kinds.h"
#include "tests/support/memory_host.h"

namespace tremvik::fuzz {
namespace {

// True when every line is of a known kind and its exact length. Takes the file apart from its end.
bool AllLinesRight(std::string_view file) {
  if (file.empty()) return false;
  std::size_t lines = 0;
  if (file.ends_with('\n')) {
    file.remove_suffix(file.ends_with("\r\n") ? 2 : 1);
  } else if (file.ends_with('\r')) {
    file.remove_suffix(1);
  }
  while (true) {
    const std::size_t end = file.find_last_of("\r\n");
    const std::string_view line = file.substr(end + 1);  // npos + 1 is 0
    const KindInfo* const kind = FindKind(line.substr(0, 2));
    if (kind == nullptr || line.size() != static_cast<std::size_t>(kind->length)) return false;
    if (++lines > 32767) return false;
    if (end == std::string_view::npos) return true;
    file.remove_suffix(line.size());
    file.remove_suffix(file.ends_with("\r\n") ? 2 : 1);
  }
}

// The boxes of a pass whose reads give `piece` bytes.
std::vector<test::Box> Pass(std::string_view bytes, std::size_t piece) {
  test::MemoryHost host;
  host.files[std::string(test::kInputPath)] = bytes;
  host.most_read = piece;
  std::uint8_t number = 0;
  const bool refused = ValidarTamanhos(test::kInputPath, {host, host, host}, number);
  Expect(refused == !AllLinesRight(bytes), "refused when, and only when, a line is wrong");
  Expect(host.boxes.size() == (refused ? 1 : 0), "one box for a refusal");
  Expect(host.open_files() == 0, "the file is closed");
  return host.boxes;
}

}  // namespace

const std::size_t kFileAt = 0;

void CheckLengthPass(std::string_view bytes) {
  const auto whole = Pass(bytes, bytes.size() + 1);
  Expect(Pass(bytes, 1 + bytes.size() % 7) == whole, "short reads change nothing");
}

}  // namespace tremvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tremvik::fuzz::CheckLengthPass(tremvik::fuzz::AsText(data, size));
  return 0;
}
