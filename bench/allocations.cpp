// Counts the allocations of the component on files of N and 2N records; what the second has more, by N, is
// what an accepted record costs. The host in memory allocates for the run, not for its records, and the
// look-ups of the reference tables are remembered from a first run. Exit status 1 where records cost any.
#include <cstdlib>
#include <iostream>
#include <new>
#include <numeric>
#include <string>

#include "component/tremvik.h"
#include "sample/sample.h"
#include "tests/support/tables_host.h"

namespace {

long g_allocations = 0;

}  // namespace

// The library's other forms of both call these.
void* operator new(std::size_t size) {
  ++g_allocations;
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace tremvik::bench {
namespace {

constexpr int kRecords = 10000;
// Texts that the run keeps and uses again grow to the longest one met, and a longer file may hold a longer
// one. What is done for each record or declaration comes hundreds of times more.
constexpr long kGrowth = 4;

// Allocations of one run over `file`; ends the program where it is not accepted whole.
long Run(test::References& references, const std::string& file, int records) {
  test::TablesHost host(references, file);
  host.keeps_log = false;
  Tremvik tremvik(host.host());
  const long before = g_allocations;
  tremvik.Monitora(test::kInputPath);
  const long allocations = g_allocations - before;
  const int stored = std::accumulate(host.written.begin(), host.written.end(), 0,
                                     [](int sum, const auto& kind) { return sum + kind.second; });
  if (tremvik.bolRetMonitora() || stored != records - 1) {  // the master record is not stored
    std::cerr << "the file was not accepted: " << tremvik.Mensagem() << '\n';
    std::exit(2);
  }
  return allocations;
}

// The second run's, in which every look-up is known.
long Allocations(test::References& references, int records) {
  const std::string file = sample::Generate({.registros = records});
  Run(references, file, records);
  return Run(references, file, records);
}

}  // namespace
}  // namespace tremvik::bench

int main() {
  namespace bench = tremvik::bench;
  tremvik::test::References references;
  const long once = bench::Allocations(references, bench::kRecords);
  const long twice = bench::Allocations(references, 2 * bench::kRecords);
  std::cout << "allocations: " << once << " in a file of " << bench::kRecords << " records, " << twice
            << " in one of " << 2 * bench::kRecords << "; "
            << static_cast<double>(twice - once) / bench::kRecords << " a record\n";
  return twice - once <= bench::kGrowth ? 0 : 1;
}
