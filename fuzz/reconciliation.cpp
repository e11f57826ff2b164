// The quantity reconciliation, by the published member: it may be called on a file that no pass has looked
// at.
#include <optional>

#include "component/tremvik.h"
#include "fuzz/memory_host.h"
#include "fuzz/target.h"
#include "host/runtime_error.h"

namespace tremvik::fuzz {
namespace {

std::string Reconcile(References& references, const Input& input) {
  MemoryHost host(references, input);
  Tremvik tremvik(host.host());
  std::optional<bool> refused;
  std::string end;
  try {
    refused = tremvik.CompararTotais(kInputPath);
    end = *refused ? "refused" : "agreed";
  } catch (const RuntimeError& error) {
    Expect(error.number() == erro::kEstouro, "only too many records or too many announced raise");
    end = "overflow";
  }
  Expect(host.open_files() == 0, "the file is closed");
  Expect(host.boxes() == (refused.value_or(false) ? 1 : 0), "one box for a refusal, none otherwise");
  Expect(host.places().empty() == !refused.value_or(false), "a refusal has its places");
  return host.trace() + end + std::to_string(tremvik.NroLinha());
}

}  // namespace

const std::size_t kFileAt = 0;

void CheckReconciliation(std::string_view bytes) {
  static References references;
  const std::string whole = Reconcile(references, {.file = bytes});
  const std::string pieces = Reconcile(references, {.file = bytes, .read_at_most = 1 + bytes.size() % 7});
  Expect(whole == pieces, "short reads change nothing");
}

}  // namespace tremvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tremvik::fuzz::CheckReconciliation(tremvik::fuzz::AsText(data, size));
  return 0;
}
