// What is wrong around the program, not in the file: each a sentence that says what to do, exit status 2, and
// a store as it was.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "adapters/sqlite/connection.h"
#include "tests/faults/program.h"
#include "tests/faults/scene.h"

namespace tremvik::test {
namespace {

namespace fs = std::filesystem;

constexpr int kAccepted = 0;
constexpr int kEnvironment = 2;

std::vector<std::string> Import(const Scene& scene, const std::string& pasta) {
  return {"importar", scene.sample(), "--pasta", pasta, "--responder", "sim"};
}

// A file held by another program as long as this lives.
class Held {
 public:
  explicit Held(const std::string& file) : connection_(file, SQLITE_OPEN_READWRITE) { connection_.Execute("BEGIN EXCLUSIVE"); }

 private:
  sqlite::Connection connection_;
};

struct Case {
  const char* name;
  std::function<void(const std::string& pasta)> spoil;
  int status;
  const char* words;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

const std::vector<Case> kCases{
    {"tables_missing", [](const std::string& pasta) { fs::remove(pasta + "/tblFixas.fix"); }, kAccepted, "concluída com sucesso"},
    {"tables_empty", [](const std::string& pasta) { WriteFile(pasta + "/tblFixas.fix", ""); }, kEnvironment, "tabelas construir"},
    {"tables_truncated", [](const std::string& pasta) { fs::resize_file(pasta + "/tblFixas.fix", 5000); }, kEnvironment,
     "tabelas construir"},
    {"tables_of_another_format", [](const std::string& pasta) { WriteFile(pasta + "/tblFixas.fix", std::string(4096, 'x')); }, kEnvironment,
     "tabelas construir"},
    {"tables_of_another_database",
     [](const std::string& pasta) { fs::copy_file(pasta + "/tremvik.db", pasta + "/tblFixas.fix", fs::copy_options::overwrite_existing); },
     kEnvironment, "tabelas construir"},
    {"tables_are_a_folder",
     [](const std::string& pasta) {
       fs::remove(pasta + "/tblFixas.fix");
       fs::create_directory(pasta + "/tblFixas.fix");
     },
     kEnvironment, "Confira"},
    {"old_temporary_is_a_folder", [](const std::string& pasta) { fs::create_directories(pasta + "/BDTemp.mdb/x"); }, kEnvironment,
     "Confira"},
};

class SpoiltFolder : public testing::TestWithParam<Case> {};

TEST_P(SpoiltFolder, IsToldAndNothingIsLost) {
  const Scene scene;
  GetParam().spoil(scene.pasta());
  const ProgramEnd end = RunProgram(Import(scene, scene.pasta()));
  EXPECT_EQ(end.status, GetParam().status) << end.output;
  EXPECT_NE(end.output.find(GetParam().words), std::string::npos) << end.output;
  EXPECT_EQ(DeclarationsIn(scene.pasta()), GetParam().status == kAccepted ? 2 : 1);
}

INSTANTIATE_TEST_SUITE_P(, SpoiltFolder, testing::ValuesIn(kCases), [](const auto& tested) { return tested.param.name; });

TEST(Environment, DatabasesHeldByAnotherProgram) {
  for (const char* const file : {"/tblFixas.fix", "/tremvik.db"}) {
    const Scene scene;
    const Held held(scene.pasta() + file);
    const ProgramEnd end = RunProgram(Import(scene, scene.pasta()));
    EXPECT_EQ(end.status, kEnvironment) << file << end.output;
    EXPECT_NE(end.output.find("em uso por outro programa"), std::string::npos) << end.output;
  }
}

TEST(Environment, DamagedStoreIsLeftAlone) {
  for (const std::string& bytes : {std::string(4096, 'x'), ReadFile(Scene().pasta() + "/tremvik.db").substr(0, 6000)}) {
    const Scene scene;
    WriteFile(scene.pasta() + "/tremvik.db", bytes);
    const ProgramEnd end = RunProgram(Import(scene, scene.pasta()));
    EXPECT_EQ(end.status, kEnvironment) << end.output;
    EXPECT_NE(end.output.find("cópia de segurança"), std::string::npos) << end.output;
    EXPECT_EQ(ReadFile(scene.pasta() + "/tremvik.db"), bytes);
  }
}

TEST(Environment, FolderThatMayOnlyBeRead) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can run the program as somebody else";
  const Scene scene;
  fs::permissions(fs::path(scene.pasta()).parent_path(), fs::perms(0755));
  fs::permissions(scene.pasta(), fs::perms(0555));
  fs::permissions(scene.pasta() + "/tremvik.db", fs::perms(0644));
  ProgramEnd end = RunProgram(Import(scene, scene.pasta()), true);
  EXPECT_EQ(end.status, kEnvironment) << end.output;
  EXPECT_NE(end.output.find("Confira se ela existe e se você pode gravar nela"), std::string::npos) << end.output;
  // Validating needs nothing but to read.
  end = RunProgram({"validar", scene.sample(), "--pasta", scene.pasta(), "--responder", "sim"}, true);
  EXPECT_EQ(end.status, kAccepted) << end.output;
}

TEST(Environment, FolderRemovedDuringTheRun) {
  const Scene scene;
  const auto remove = [&] { fs::remove_all(scene.pasta()); };
  ProgramEnd end = RunOnTerminal({"importar", scene.sample(), "--pasta", scene.pasta()}, remove);
  EXPECT_EQ(end.status, kEnvironment) << end.output;
  EXPECT_NE(end.output.find("tremvik: "), std::string::npos) << end.output;
  end = RunProgram(Import(scene, scene.pasta()));
  EXPECT_EQ(end.status, kAccepted) << "the next run on the same folder: " << end.output;
}

// A small file system of its own, unmounted at the end.
class SmallDisk {
 public:
  SmallDisk() : mounted_(mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=1m") == 0) {}
  ~SmallDisk() {
    if (mounted_) umount2(folder_.path().c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  [[nodiscard]] bool mounted() const { return mounted_; }
  [[nodiscard]] const std::string& path() const { return folder_.path(); }
  // Leaves that many bytes free.
  void FillUpTo(std::uintmax_t free) const {
    fs::remove(path() + "/cheio");
    const auto available = fs::space(path()).available;
    WriteFile(path() + "/cheio", std::string(available > free ? available - free : 0, 'x'));
  }

 private:
  ScratchFolder folder_;
  bool mounted_;
};

TEST(Environment, FullDisk) {
  const SmallDisk disk;
  if (!disk.mounted()) GTEST_SKIP() << "no file system can be mounted here (root only)";
  const Scene scene;
  const std::string pasta = disk.path() + "/pasta";
  int told = 0;
  for (std::uintmax_t free = 0; free <= 400; free += 20) {
    SCOPED_TRACE(std::to_string(free) + " KiB free");
    fs::remove_all(pasta);
    fs::remove(disk.path() + "/cheio");
    fs::copy(scene.pasta(), pasta);
    disk.FillUpTo(free * 1024);
    const ProgramEnd end = RunProgram(Import(scene, pasta));
    if (end.status == kAccepted) continue;
    ++told;
    EXPECT_EQ(end.status, kEnvironment) << end.output;
    EXPECT_NE(end.output.find("está cheio"), std::string::npos) << end.output;
    EXPECT_NE(end.output.find("Libere espaço"), std::string::npos) << end.output;
    EXPECT_EQ(DeclarationsIn(pasta), 1);
    disk.FillUpTo(std::uintmax_t{400} * 1024);
    EXPECT_EQ(RunProgram(Import(scene, pasta)).status, kAccepted) << "with room again";
  }
  EXPECT_GT(told, 1);
}

}  // namespace
}  // namespace tremvik::test
