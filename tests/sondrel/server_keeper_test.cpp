#include <gtest/gtest.h>

#include <vector>

#include "components/sondrel/rigctld/server_keeper.h"

namespace kelvane::sondrel {
namespace {

class Keeper : public testing::Test {
 protected:
  /// Lets time pass; every start is written down with its second.
  void run(milliseconds time) {
    const Instant end = now + time;
    while (keeper.nextDue() <= end) {
      now = std::max(now, keeper.nextDue());
      if (livesFor >= milliseconds(0) && now >= startedAt + livesFor) runs = false;
      keeper.tick(now);
    }
    now = end;
  }
  std::vector<long> startedAfter() const {
    std::vector<long> spans;
    for (std::size_t i = 1; i < starts.size(); ++i) {
      spans.push_back(std::chrono::duration_cast<milliseconds>(starts[i] - starts[i - 1]).count());
    }
    return spans;
  }

  Instant now = Instant{} + milliseconds(100'000);
  Instant startedAt{};
  milliseconds livesFor{-1};  ///< it dies so long after each start; never when negative
  std::string problem;
  bool runs = false;
  int ends = 0;
  std::vector<Instant> starts;
  ServerKeeper keeper{{[this] {
                         starts.push_back(startedAt = now);
                         runs = problem.empty();
                         return runs ? Result<>() : Failure{problem};
                       },
                       [this] { return runs; },
                       [this] {
                         runs = false;
                         ++ends;
                       }}};
};

TEST_F(Keeper, StartsOneServerAndEndsItWhenItIsNotWantedAnyMore) {
  EXPECT_EQ(keeper.nextDue(), kNever);
  EXPECT_EQ(keeper.want(now).reason(), "");
  EXPECT_EQ(keeper.want(now).reason(), "");
  run(milliseconds(60'000));
  EXPECT_EQ(starts.size(), 1U);
  keeper.dismiss();
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(keeper.nextDue(), kNever);
  keeper.want(now);
  EXPECT_EQ(starts.size(), 2U);
}

TEST_F(Keeper, StartsAServerThatDiedAtOnceAndOneThatKeepsDyingEverMoreSeldom) {
  keeper.want(now);
  run(milliseconds(20'000));
  runs = false;
  run(milliseconds(300));
  EXPECT_EQ(starts.size(), 2U) << "at once";
  livesFor = milliseconds(0);
  run(milliseconds(200'000));
  const auto spans = startedAfter();
  ASSERT_GE(spans.size(), 8U);
  for (std::size_t i = 2; i < spans.size(); ++i) EXPECT_GE(spans[i], spans[i - 1]) << i;
  EXPECT_GE(spans.back(), 30'000);
  EXPECT_LE(spans.back(), 31'000);
  livesFor = milliseconds(15'000);
  starts.clear();
  run(milliseconds(120'000));
  EXPECT_GE(starts.size(), 5U) << "one that has run for long is no failed start";
}

TEST_F(Keeper, SaysEachTimeWhyAServerCannotBeStartedButTriesItSeldom) {
  problem = "no such program";
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(keeper.want(now).reason(), "no such program");
    run(milliseconds(500));
  }
  EXPECT_EQ(starts.size(), 1U);
  problem.clear();
  run(milliseconds(30'000));
  EXPECT_EQ(starts.size(), 2U);
  EXPECT_EQ(keeper.want(now).reason(), "");
}

TEST_F(Keeper, IsPatientWithAServerThatDoesNotListenYet) {
  EXPECT_FALSE(keeper.justStarted(now));
  keeper.want(now);
  EXPECT_TRUE(keeper.justStarted(now));
  run(milliseconds(10'000));
  EXPECT_FALSE(keeper.justStarted(now));
  runs = false;
  run(milliseconds(300));
  EXPECT_TRUE(keeper.justStarted(now)) << "started anew";
}

}  // namespace
}  // namespace kelvane::sondrel
