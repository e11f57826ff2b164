// An import that is killed at any moment leaves the store as it was or complete, and the next import works.
// TREMVIK_KILLS is how often (40 by default; ./dev fuzz asks for 200).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "tests/faults/program.h"
#include "tests/faults/scene.h"

namespace tremvik::test {
namespace {

using Clock = std::chrono::steady_clock;

TEST(KilledImport, LeavesAWholeStore) {
  constexpr int kDeclarations = 40;
  const char* const wanted = std::getenv("TREMVIK_KILLS");
  const int rounds = wanted != nullptr ? std::atoi(wanted) : 40;
  const ScratchFolder folder;
  const std::string pasta = folder.path() + "/pasta";
  const std::string file = folder.path() + "/amostra.txt";
  const std::vector<std::string> arguments{"importar", file, "--pasta", pasta};
  WriteFile(file, Sample(kDeclarations, 7));
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);

  ASSERT_EQ(WaitFor(StartProgram(arguments, nowhere)), 0);  // makes the folder and its tables
  std::filesystem::remove(pasta + "/tremvik.db");
  const auto start = Clock::now();
  ASSERT_EQ(WaitFor(StartProgram(arguments, nowhere)), 0);
  const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);

  std::mt19937 random(20120320);
  int killed = 0;
  int as_before = 0;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    for (const char* const suffix : {"", "-journal"})
      std::filesystem::remove(pasta + "/tremvik.db" + suffix);
    // A killed one may have left anything else in the folder: the next one begins there.
    const auto moment = std::chrono::microseconds(std::uniform_int_distribution<long>(0, static_cast<long>(whole.count()))(random));
    const pid_t program = StartProgram(arguments, nowhere);
    std::this_thread::sleep_for(moment);
    kill(program, SIGKILL);
    const int status = WaitFor(program);
    const int held = DeclarationsIn(pasta);
    EXPECT_TRUE(held == 0 || held == kDeclarations) << held << " declarations after " << moment.count() << " us";
    EXPECT_TRUE(status == -1 || held == kDeclarations);
    killed += status == -1 ? 1 : 0;
    as_before += held == 0 ? 1 : 0;
    if (held == 0) {
      EXPECT_EQ(WaitFor(StartProgram(arguments, nowhere)), 0) << "the next import";
    }
    EXPECT_EQ(DeclarationsIn(pasta), kDeclarations);
  }
  close(nowhere);
  std::cout << rounds << " imports, " << killed << " killed, " << as_before << " stores as before\n";
  EXPECT_GT(killed, rounds / 4);
}

}  // namespace
}  // namespace tremvik::test
