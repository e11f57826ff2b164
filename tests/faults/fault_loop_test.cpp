// One call after another fails, in a whole import of a file with every record kind.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/faults/failing_disk.h"
#include "tests/faults/memory.h"
#include "tests/faults/scene.h"

namespace tremvik::test {
namespace {

constexpr int kHeldBefore = 1;

class Faults : public testing::TestWithParam<Reach> {
 protected:
  using Import = std::function<Scene::Ended(FaultPlan&)>;
  using Check = std::function<void(const Scene::Ended&)>;

  // Imports with the n-th call failing, n = 1, 2, 3 ..., until an import does not get as far as that call.
  // Each one tells at most one fault and leaves a folder that serves the next.
  void Each(const Import& import, const Check& check) {
    for (long n = 1; !HasFailure(); ++n) {
      SCOPED_TRACE("call " + std::to_string(n));
      FaultPlan plan(n, GetParam());
      const Scene::Ended ended = import(plan);
      if (!plan.struck()) {
        EXPECT_TRUE(ended.kept);
        return;
      }
      EXPECT_LE(ended.desk.faults, 1) << ended.desk.last;
      check(ended);
      scene_.Restore();
      const Scene::Ended next = scene_.Import({});
      EXPECT_TRUE(next.kept) << "the next run failed: " << next.desk.last << next.why;
      scene_.Restore();
    }
  }

  Scene scene_;
};

TEST_P(Faults, AnyAllocationMayFail) {
  const auto import = [&](FaultPlan& plan) {
    Scene::Ended ended =
        scene_.Import({.before = [&] { PlanAllocations(&plan); }, .after = [] { PlanAllocations(nullptr); }});
    PlanAllocations(nullptr);  // where the run raised
    return ended;
  };
  Each(import, [&](const Scene::Ended& ended) {
    EXPECT_TRUE(ended.failed && !ended.kept) << "a fault was taken for success";
    EXPECT_EQ(DeclarationsIn(scene_.pasta()), kHeldBefore);
    EXPECT_TRUE(ended.desk.faults == 1 || GetParam() == Reach::kFromThere) << "one fault, one box";
  });
}

// Reads, writes, syncs, locks of the databases: all that the import and the move into the store do on the
// disk.
TEST_P(Faults, AnyOperationOnTheDatabasesMayFail) {
  const auto import = [&](FaultPlan& plan) {
    PlanDisk(&plan);
    Scene::Ended ended = scene_.Import({});
    PlanDisk(nullptr);
    return ended;
  };
  Each(import, [&](const Scene::Ended& ended) {
    const int held = DeclarationsIn(scene_.pasta());
    EXPECT_TRUE(held == kHeldBefore + 1 || (held == kHeldBefore && !ended.kept)) << held;
    EXPECT_FALSE(!ended.kept && ended.why.empty() && ended.desk.last.empty()) << "a fault without a word";
  });
}

// Puts another file in the place of the one being imported, as soon as its lengths are read.
struct Replacing final : Events {
  explicit Replacing(std::string_view of) : path(of) {}
  void Progresso() override { WriteFile(path, Sample(1, 5)); }
  void Fechar() override {}
  std::string path;
};

TEST(ChangingFile, IsToldAndNotKept) {
  const Scene scene;
  Replacing replacing(scene.sample());
  const Scene::Ended ended = scene.Import({.wrap = [&](const Host& host) {
    return Host{host.screen,      replacing,   host.diagnostics, host.files,
                host.application, host.engine, host.components};
  }});
  EXPECT_FALSE(ended.kept);
  EXPECT_NE(ended.desk.last.find("mudou enquanto era examinado"), std::string::npos) << ended.desk.last;
  EXPECT_EQ(DeclarationsIn(scene.pasta()), kHeldBefore);
  EXPECT_TRUE(scene.Import({}).kept) << "the other file alone";
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::Values(Reach::kOnce, Reach::kFromThere), [](const auto& reach) {
  return std::string(reach.param == Reach::kOnce ? "once" : "from_there");
});

}  // namespace
}  // namespace tremvik::test
