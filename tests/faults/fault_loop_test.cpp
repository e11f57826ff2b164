// One call after another fails, in a whole import of a file with every record kind.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "tests/faults/failing_disk.h"
#include "tests/faults/fault_host.h"
#include "tests/faults/memory.h"
#include "tests/faults/scene.h"

namespace tremvik::test {
namespace {

constexpr int kHeldBefore = 1;
constexpr long kGivenUp = 100'000;

// What holds after any fault, and that the folder still serves.
void ExpectNothingLost(const Scene& scene, const Scene::Ended& ended) {
  EXPECT_TRUE(ended.failed) << "a fault was taken for success";
  EXPECT_FALSE(ended.kept);
  EXPECT_LE(ended.desk.faults, 1) << ended.desk.last;
  const int held = DeclarationsIn(scene.pasta());
  EXPECT_EQ(held, kHeldBefore);
  const Scene::Ended next = scene.Import({});
  EXPECT_TRUE(next.kept) << "the next run failed: " << next.desk.last << next.why;
  EXPECT_EQ(next.desk.questions, 1);
  scene.Restore();
}

class Faults : public testing::TestWithParam<Reach> {
 protected:
  using Import = std::function<Scene::Ended(FaultPlan&)>;
  using Check = std::function<void(const Scene::Ended&)>;

  // Imports with the n-th call failing, n = 1, 2, 3 ..., and checks each, until an import does not get as far as that call. Returns
  // that n.
  long Each(const Import& import, const Check& check) {
    for (long n = 1; n < kGivenUp && !HasFailure(); ++n) {
      SCOPED_TRACE("call " + std::to_string(n));
      FaultPlan plan(n, GetParam());
      const Scene::Ended ended = import(plan);
      if (!plan.struck()) {
        EXPECT_TRUE(ended.kept);
        return n;
      }
      check(ended);
    }
    ADD_FAILURE() << "no end was reached";
    return 0;
  }
  void ExpectToldAndNothingLost(const Scene::Ended& ended) const {
    ExpectNothingLost(scene_, ended);
    EXPECT_TRUE(ended.desk.faults == 1 || GetParam() == Reach::kFromThere) << "one fault, one box";
  }

  Scene scene_;
};

TEST_P(Faults, AnyCallOfTheHostMayFail) {
  const auto import = [&](FaultPlan& plan) {
    std::unique_ptr<FaultHost> faulty;
    const auto wrap = [&](const Host& host) {
      faulty = std::make_unique<FaultHost>(host, plan);
      return faulty->host();
    };
    Scene::Ended ended = scene_.Import({.wrap = wrap});
    EXPECT_EQ(faulty->open_files(), 0U);
    return ended;
  };
  EXPECT_GT(Each(import, [&](const auto& ended) { ExpectToldAndNothingLost(ended); }), 300)
      << "a file with every record kind makes more calls";
}

TEST_P(Faults, AnyAllocationMayFail) {
  const auto import = [&](FaultPlan& plan) {
    Scene::Ended ended = scene_.Import({.before = [&] { PlanAllocations(&plan); }, .after = [] { PlanAllocations(nullptr); }});
    PlanAllocations(nullptr);  // where the run raised
    return ended;
  };
  Each(import, [&](const auto& ended) { ExpectToldAndNothingLost(ended); });
}

// Reads, writes, syncs, locks of the databases: all that the import and the move into the store do on the disk.
TEST_P(Faults, AnyOperationOnTheDatabasesMayFail) {
  const auto import = [&](FaultPlan& plan) {
    PlanDisk(&plan);
    Scene::Ended ended = scene_.Import({});
    PlanDisk(nullptr);
    return ended;
  };
  const auto check = [&](const Scene::Ended& ended) {
    const int held = DeclarationsIn(scene_.pasta());
    if (ended.kept) {
      EXPECT_EQ(held, kHeldBefore + 1) << "kept, but not there";
    } else {
      EXPECT_TRUE(held == kHeldBefore || held == kHeldBefore + 1) << held;
      EXPECT_FALSE(ended.why.empty() && ended.desk.last.empty()) << "a fault without a word";
    }
    EXPECT_LE(ended.desk.faults, 1) << ended.desk.last;
    scene_.Restore();
    const Scene::Ended next = scene_.Import({});
    EXPECT_TRUE(next.kept) << "the next run failed: " << next.desk.last << next.why;
    scene_.Restore();
  };
  Each(import, check);
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
    return Host{host.screen, replacing, host.diagnostics, host.files, host.application, host.engine, host.components};
  }});
  EXPECT_FALSE(ended.kept);
  EXPECT_NE(ended.desk.last.find("mudou enquanto era examinado"), std::string::npos) << ended.desk.last;
  EXPECT_EQ(DeclarationsIn(scene.pasta()), kHeldBefore);
  EXPECT_TRUE(scene.Import({}).kept) << "the other file alone";
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::Values(Reach::kOnce, Reach::kFromThere),
                         [](const auto& reach) { return std::string(reach.param == Reach::kOnce ? "once" : "from_there"); });

}  // namespace
}  // namespace tremvik::test
