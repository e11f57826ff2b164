// The quantity reconciliation, by the published member: it may be called on a file that no pass has looked
// at.
#include <optional>
#include <string>
#include <vector>

#include "component/tremvik.h"
#include "fuzz/target.h"
#include "host/runtime_error.h"
#include "tests/support/memory_host.h"

namespace tremvik::fuzz {
namespace {

std::vector<std::string> Reconcile(std::string_view bytes, std::size_t piece) {
  test::MemoryHost host;
  host.files[std::string(test::kInputPath)] = bytes;
  host.most_read = piece;
  Tremvik tremvik(host.host());
  std::optional<bool> refused;
  std::string end;
  try {
    refused = tremvik.CompararTotais(test::kInputPath);
    end = *refused ? "refused" : "agreed";
  } catch (const RuntimeError& error) {
    Expect(error.number() == erro::kEstouro, "only too many records or too many announced raise");
    end = "overflow";
  }
  Expect(host.open_files() == 0, "the file is closed");
  Expect(host.boxes.size() == (refused.value_or(false) ? 1 : 0), "one box for a refusal, none otherwise");
  Expect(host.places.empty() == !refused.value_or(false), "a refusal has its places");
  host.log.push_back(end + " at " + std::to_string(tremvik.NroLinha()));
  for (const test::Box& box : host.boxes)
    host.log.push_back(box.text);
  return host.log;
}

}  // namespace

const std::size_t kFileAt = 0;

void CheckReconciliation(std::string_view bytes) {
  Expect(Reconcile(bytes, bytes.size() + 1) == Reconcile(bytes, 1 + bytes.size() % 7),
         "short reads change nothing");
}

}  // namespace tremvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tremvik::fuzz::CheckReconciliation(tremvik::fuzz::AsText(data, size));
  return 0;
}
