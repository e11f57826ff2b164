// Validating says, step by step, what importing does.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/faults/program.h"
#include "tests/faults/scene.h"

namespace tremvik::test {
namespace {

TEST(SameTrace, ValidarAndImportarOnEverySample) {
  const ScratchFolder folder;
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(SAMPLES_DIR)) {
    if (entry.path().extension() != ".txt") continue;
    ++files;
    for (const char* const answer : {"sim", "nao"}) {
      SCOPED_TRACE(entry.path().filename().string() + " " + answer);
      const std::string pasta = folder.path() + "/pasta";
      std::filesystem::remove(pasta + "/tremvik.db");
      const auto run = [&](const char* verb) {
        return RunProgram({verb, entry.path(), "--pasta", pasta, "--json", "--responder", answer});
      };
      const ProgramEnd validated = run("validar");
      const ProgramEnd imported = run("importar");
      EXPECT_EQ(validated.status, imported.status);
      EXPECT_EQ(validated.output, imported.output);
      EXPECT_NE(imported.output.find("\"tipo\":\"fim\""), std::string::npos) << imported.output;
    }
  }
  EXPECT_GT(files, 10);
}

}  // namespace
}  // namespace tremvik::test
