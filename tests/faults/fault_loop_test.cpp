// One call after another fails, in a whole import of a file with every record kind.
#include <gtest/gtest.h>

#include <memory>
#include <optional>

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
  Scene scene_;
};

TEST_P(Faults, AnyCallOfTheHostMayFail) {
  bool passed = false;
  for (long n = 1; !passed && n < kGivenUp && !HasFailure(); ++n) {
    SCOPED_TRACE("call " + std::to_string(n));
    FaultPlan plan(n, GetParam());
    std::unique_ptr<FaultHost> faulty;
    const auto wrap = [&](const Host& host) {
      faulty = std::make_unique<FaultHost>(host, plan);
      return faulty->host();
    };
    const Scene::Ended ended = scene_.Import({.wrap = wrap});
    EXPECT_EQ(faulty->open_files(), 0U);
    passed = !plan.struck();
    if (passed) {
      EXPECT_TRUE(ended.kept);
      EXPECT_GT(n, 300) << "a file with every record kind makes more calls";
      continue;
    }
    ExpectNothingLost(scene_, ended);
    EXPECT_TRUE(ended.desk.faults == 1 || GetParam() == Reach::kFromThere) << "one fault, one box";
  }
  EXPECT_TRUE(passed);
}

TEST_P(Faults, AnyAllocationMayFail) {
  bool passed = false;
  for (long n = 1; !passed && n < kGivenUp && !HasFailure(); ++n) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    bool struck = false;
    const auto before = [&] { FailAllocation(n, GetParam() == Reach::kFromThere); };
    const auto after = [&] { struck = AllowAllocations(); };
    const Scene::Ended ended = scene_.Import({.before = before, .after = after});
    passed = !struck;
    if (passed) {
      EXPECT_TRUE(ended.kept);
      continue;
    }
    ExpectNothingLost(scene_, ended);
    EXPECT_TRUE(ended.desk.faults == 1 || GetParam() == Reach::kFromThere) << "one fault, one box";
  }
  EXPECT_TRUE(passed);
}

// Reads, writes, syncs, locks of the databases: all that the import and the move into the store do on the
// disk.
TEST_P(Faults, AnyOperationOnTheDatabasesMayFail) {
  bool passed = false;
  for (long n = 1; !passed && n < kGivenUp && !HasFailure(); ++n) {
    SCOPED_TRACE("operation " + std::to_string(n));
    FailingDisk::Fail(n, GetParam() == Reach::kFromThere);
    const Scene::Ended ended = scene_.Import({});
    passed = !FailingDisk::Heal();
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
  }
  EXPECT_TRUE(passed);
}

INSTANTIATE_TEST_SUITE_P(, Faults, testing::Values(Reach::kOnce, Reach::kFromThere), [](const auto& reach) {
  return std::string(reach.param == Reach::kOnce ? "once" : "from_there");
});

}  // namespace
}  // namespace tremvik::test
