#include "adapters/local/run_file.h"

#include <chrono>
#include <thread>

#include "host/runtime_error.h"

namespace tremvik {
namespace {

using std::chrono::nanoseconds;

// The longest step in which a file system's clock goes: two changes within one step have one time.
constexpr std::chrono::milliseconds kStep{10};

nanoseconds Time(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

bool IsSame(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         Time(a.st_mtim) == Time(b.st_mtim) && Time(a.st_ctim) == Time(b.st_ctim);
}

// A file that was changed just now could change again without a new time: the next one begins meanwhile.
void AwaitNextStep(const struct stat& found) {
  const nanoseconds age = std::chrono::system_clock::now().time_since_epoch() - Time(found.st_ctim);
  if (age >= nanoseconds::zero() && age < kStep) std::this_thread::sleep_for(kStep - age);
}

[[noreturn]] void RaiseChanged() {
  throw RuntimeError(erro::kEntradaSaida,
                     "O arquivo mudou enquanto era examinado; espere que ele esteja completo.");
}

}  // namespace

void RunFile::Begin() noexcept {
  in_run_ = true;
  first_.reset();
}

void RunFile::Opened(int number, std::string_view name, const struct stat& found) {
  if (!in_run_) return;
  if (!first_) {
    name_ = name;
    first_ = found;
    AwaitNextStep(found);
  } else if (name != name_) {
    return;
  }
  number_ = number;
  if (!IsSame(*first_, found)) RaiseChanged();
}

void RunFile::EndReached(int number, int descriptor) const {
  struct stat found {};
  if (!in_run_ || !first_ || number != number_) return;
  if (::fstat(descriptor, &found) != 0 || !IsSame(*first_, found)) RaiseChanged();
}

}  // namespace tremvik
