#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "components/ambrel/kilohertz.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using Walk = std::vector<FrqRecord>;

/// Steps until a step leads nowhere; without that last one.
template <class Step>
Walk walkOut(Hz from, Step step) {
  Walk walked;
  for (Hz at = from;;) {
    const FrqRecord record = step();
    if (record.frequency == at) return walked;
    walked.push_back(record);
    at = record.frequency;
  }
}

/// Random sets of known frequencies with many duplicates, within and between the sets and in a
/// schedule, and what the walks through them must give.
class Walks : public testing::TestWithParam<unsigned> {
 protected:
  Walks() : random_(GetParam()) {
    std::string known, schedule;
    const int sets = pick(1, 5);
    for (int set = 0; set < sets; ++set) {
      known += "[Set " + std::to_string(set) + "]\n";
      for (int i = pick(1, 40); i > 0; --i) known += kilohertzText(add(set)) + " ; station\n";
    }
    for (int i = pick(1, 60); i > 0; --i)
      schedule += kilohertzText(add(sets)) + ";0000-2400;;G;Station;E;Eu;w;1;;\r\n";
    play.write(play.dataFolder() / "known-random.txt", known);
    play.start();
    play.importText(schedule);
  }

  int pick(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }

  Hz add(int set) {
    const Hz frequency = pick(0, 3) == 0 ? pick(1, 10) * 1000 : pick(1, 200) * 100'000;
    all.insert(frequency);
    bySet[set].insert(frequency);
    return frequency;
  }

  static Walk expected(const std::set<Hz>& frequencies) {
    Walk walk;
    for (const Hz frequency : frequencies)
      walk.push_back(
          {static_cast<Long>(walk.size()) + 1, static_cast<Count>(frequencies.size()), frequency});
    return walk;
  }

  /// Walks the whole row up and down again; down it is the same row but for the last record.
  template <class Step>
  void expectRow(const std::set<Hz>& frequencies, Step step) {
    play.core->SetFrqFrequency(0);
    const Walk up = walkOut(0, [&] { return step(kNext); });
    EXPECT_EQ(up, expected(frequencies));
    const FrqRecord end = step(kNext);
    EXPECT_EQ(end, up.back()) << "at the end it stays on the last record";
    Walk down = walkOut(end.frequency, [&] { return step(kPrevious); });
    std::reverse(down.begin(), down.end());
    EXPECT_EQ(down, Walk(up.begin(), up.end() - 1));
  }

  std::mt19937 random_;
  AmbrelPlay play;
  std::set<Hz> all;
  std::map<int, std::set<Hz>> bySet;
};

TEST_P(Walks, VisitEveryFrequencyOnceBothWays) {
  expectRow(all, [this](Long direction) { return play.core->NextFrqKnown(direction).value(); });
  for (const auto& [set, frequencies] : bySet)
    expectRow(frequencies, [this, set = set](Long direction) {
      const FrqRecord record = play.core->NextFrqInSet(set, direction);
      EXPECT_EQ(play.core->GetFrqSet(), set);
      EXPECT_EQ(play.core->GetRxKnownFrequency(), record.frequency);
      return record;
    });
}

TEST_P(Walks, GoOnFromAnyPosition) {
  for (int i = 0; i < 50; ++i) {
    const Hz from = pick(0, 21'000'000);
    const auto next = all.upper_bound(from);
    const auto previous = all.lower_bound(from);
    play.core->SetFrqFrequency(from);
    EXPECT_EQ(play.core->NextFrqKnown(kNext).value().frequency, next == all.end() ? from : *next);
    play.core->SetFrqFrequency(from);
    EXPECT_EQ(play.core->NextFrqKnown(kPrevious).value().frequency,
              previous == all.begin() ? from : *std::prev(previous));
  }
}

TEST_P(Walks, TheNearestIsFoundWithinTheTolerance) {
  for (int i = 0; i < 200; ++i) {
    const Hz wanted = pick(0, 3) == 0 ? pick(0, 12'000) : pick(0, 21'000'000);
    const Hz tolerance = pick(0, 1) == 0 ? 250 : pick(0, 100'000);
    const auto distance = [wanted](Hz frequency) { return std::abs(frequency - wanted); };
    const Hz nearest = *std::min_element(all.begin(), all.end(), [&](Hz a, Hz b) {
      return distance(a) < distance(b);  // of two equally near ones the lower
    });
    const bool found = play.core->FindRxKnownFrequency(wanted, tolerance);
    EXPECT_EQ(found, distance(nearest) <= tolerance);
    EXPECT_EQ(play.core->GetRxKnownFrequency(), found ? nearest : -1);
    EXPECT_EQ(play.core->GetFrqSet() >= 0, found);
  }
}

TEST_P(Walks, GoThroughTheSetsBothWays) {
  const auto step = [this](Long direction) { return play.core->NextFrqSet(direction).value(); };
  const auto sets = static_cast<Long>(bySet.size());
  play.core->SetFrqFrequency(0);
  std::vector<Long> up, down;
  for (const FrqRecord& record : walkOut(0, [&] { return step(kNext); })) {
    EXPECT_EQ(record.count, sets);
    EXPECT_EQ(play.core->GetFrqSet() >= 0, true);
    EXPECT_TRUE(bySet[record.position - 1].contains(record.frequency));
    up.push_back(record.position);
  }
  const FrqRecord end = step(kNext);
  for (const FrqRecord& record : walkOut(end.frequency, [&] { return step(kPrevious); }))
    down.push_back(record.position);
  // A set whose one frequency is the present one cannot be gone to; all others are, in order.
  EXPECT_TRUE(std::is_sorted(up.begin(), up.end()));
  EXPECT_TRUE(std::is_sorted(down.rbegin(), down.rend()));
  EXPECT_EQ(std::adjacent_find(up.begin(), up.end()), up.end());
  for (const auto& [set, frequencies] : bySet) {
    if (frequencies.size() > 1) {
      EXPECT_EQ(std::count(up.begin(), up.end(), set + 1), 1);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Walks, testing::Range(1u, 16u));

TEST(Walking, StaysInTheSetThatTheOperatorWalks) {
  AmbrelPlay play;
  play.write(
      play.dataFolder() / "known-a.txt",
      "[First]\n5000 ; A five\n6000 ; A six\n[Second]\n6000 ; B six ; ; ; CW\n7000 ; B seven\n");
  play.start();
  const auto settle = [&](Hz frequency) {  // what the panel does when the receiver has followed
    play.core->SetFrqFrequency(frequency);
    play.core->FindRxKnownFrequency(frequency, 250);
  };
  settle(7'000'000);
  EXPECT_EQ(play.core->GetFrqSet(), 1);
  settle(play.core->NextFrqInSet(1, kPrevious).value().frequency);
  EXPECT_EQ(play.core->GetFrqSet(), 1) << "though the first set knows the frequency too";
  EXPECT_EQ(play.core->GetFrqKnownName().value(), "B six");
  EXPECT_EQ(play.core->GetFrqKnownMode(), 4);
  EXPECT_EQ(play.core->NextFrqInSet(1, kPrevious).value().frequency, 6'000'000);
  settle(5'000'000);
  settle(6'000'000);
  EXPECT_EQ(play.core->GetFrqSet(), 0) << "by hand the first set speaks";
  settle(1'000'000);
  EXPECT_EQ(play.core->GetFrqSet(), -1);
  EXPECT_EQ(play.core->GetFrqKnownName().value(), "");
}

TEST(Walking, WithNothingKnownStaysWhereItIs) {
  AmbrelPlay play;
  play.core->SetFrqFrequency(5'000'000);
  const FrqRecord nowhere{0, 0, 5'000'000};
  EXPECT_EQ(play.core->NextFrqKnown(kNext).value(), nowhere);
  EXPECT_EQ(play.core->NextFrqKnown(kPrevious).value(), nowhere);
  EXPECT_EQ(play.core->NextFrqSet(kNext).value(), nowhere);
  EXPECT_EQ(play.core->NextFrqSet(kPrevious).value(), nowhere);
  for (const Long set : {-1, 0, 7}) EXPECT_EQ(play.core->NextFrqInSet(set, kNext).value(), nowhere);
  EXPECT_FALSE(play.core->FindRxKnownFrequency(5'000'000, 2'147'483'647));
}

TEST(Walking, ReachesTheLargestFrequency) {
  AmbrelPlay play;
  play.write(play.dataFolder() / "known-a.txt", "0.001 ; Lowest\n2147483.647 ; Highest\n");
  play.start();
  play.core->SetFrqFrequency(0);
  EXPECT_EQ(play.core->NextFrqKnown(kNext).value().frequency, 1);
  EXPECT_EQ(play.core->NextFrqKnown(kNext).value().frequency, 2'147'483'647);
  EXPECT_EQ(play.core->NextFrqKnown(kNext).value(), (FrqRecord{2, 2, 2'147'483'647}));
  EXPECT_FALSE(play.core->FindRxKnownFrequency(2'147'000'000, 250));
  EXPECT_TRUE(play.core->FindRxKnownFrequency(1, 2'147'483'647));
}

}  // namespace
}  // namespace kelvane::ambrel
