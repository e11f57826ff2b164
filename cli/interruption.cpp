#include "cli/interruption.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace tremvik::cli {
namespace {

// What a signal reaches can only be global. The pipe becomes readable for good, so that a thread that waits
// wakes up whichever of them the signal meets.
std::atomic<bool> g_interrupted = false;
std::array<int, 2> g_pipe{-1, -1};
static_assert(std::atomic<bool>::is_always_lock_free);

constexpr unsigned kGrace = 3;  // seconds

void Interrupt(int /*signal*/) {
  const int error = errno;
  g_interrupted = true;
  alarm(kGrace);  // a write that nobody reads, a file that does not come: what still waits then is ended
  [[maybe_unused]] const ssize_t written = write(g_pipe[1], "", 1);
  errno = error;
}

}  // namespace

void WatchForInterruption() {
  if (g_pipe[0] < 0 && pipe2(g_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  struct sigaction action {};
  action.sa_handler = Interrupt;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
      sigaction(signal, &action, nullptr);
  }
}

bool Interrupted() { return g_interrupted; }

bool WaitForInput(int descriptor) {
  std::array<pollfd, 2> waiting{{{descriptor, POLLIN, 0}, {g_pipe[0], POLLIN, 0}}};
  while (!Interrupted()) {
    const int ready = poll(waiting.data(), waiting.size(), -1);
    if (ready < 0 && errno != EINTR) return true;
    if (ready > 0 && waiting[0].revents != 0) return !Interrupted();
  }
  return false;
}

}  // namespace tremvik::cli
