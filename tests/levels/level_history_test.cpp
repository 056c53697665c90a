#include "levels/level_history.h"

#include <gtest/gtest.h>

#include <array>

#include "levels/comparison.h"

namespace kelvane {
namespace {

constexpr LevelTime kFirstMoment = 1'000'000'000'000;
constexpr LevelTime kHour = 3'600'000;

/// `seconds` of readings, 20 a second, of the level that a function gives for each.
template <class Level>
void feed(LevelHistory& history, LevelTime from, int seconds, Level level) {
  for (int i = 0; i < seconds * 20; ++i) history.add(from + i * 50, level(i));
}

std::array<LevelSpan, 4> four(const LevelHistory& history, LevelTime from, LevelTime to) {
  std::array<LevelSpan, 4> columns;
  history.fill(from, to, columns);
  return columns;
}

TEST(LevelHistory, KeepsReadingsForTenMinutesAndSecondsForADayInBoundedMemory) {
  LevelHistory history;
  feed(history, kFirstMoment, 3600, [](int i) { return i % 20 == 7 ? -60 : -80; });
  const LevelTime end = kFirstMoment + kHour;
  EXPECT_NEAR(static_cast<double>(end - history.recentSince()), 600'000, 100);
  const auto now = four(history, end - 200, end);
  EXPECT_EQ(now[0].readings + now[1].readings + now[2].readings + now[3].readings, 4);
  for (const LevelSpan& old : four(history, kFirstMoment + 1000, kFirstMoment + 5000)) {
    EXPECT_EQ(old.least, -80);
    EXPECT_EQ(old.greatest, -60);
    EXPECT_NEAR(old.mean, -79, 0.05);
  }
  LevelHistory fast;
  for (LevelTime i = 0; i < 26 * 3600; ++i) {
    for (int k = 0; k < (i < 25 * 3600 ? 1 : 100); ++k)
      fast.add(kFirstMoment + i * 1000 + k * 10, -90);
  }
  EXPECT_LE(fast.size(), LevelHistory::kComputedSize * 11 / 10);
  EXPECT_EQ(fast.second(kFirstMoment / 1000).readings, 0) << "older than a day";
  EXPECT_EQ(fast.second((kFirstMoment + 3 * kHour) / 1000).readings, 1);
}

TEST(LevelHistory, ALinkThatIsDownIsAGapAlsoWithinASecond) {
  LevelHistory history;
  feed(history, kFirstMoment, 2, [](int) { return -70; });
  history.gap();
  feed(history, kFirstMoment + 5000, 1, [](int) { return -71; });
  history.add(kFirstMoment + 30'000, -72);
  std::array<LevelSpan, 31> seconds;
  for (const LevelTime later : {LevelTime(0), kHour}) {
    // One by one, and long after from the seconds.
    if (later) feed(history, kFirstMoment + later, 700, [](int) { return -90; });
    history.fill(kFirstMoment, kFirstMoment + 31'000, seconds);
    for (int i = 0; i < 31; ++i) {
      EXPECT_EQ(seconds[i].readings > 0, i < 2 || i == 5 || i == 30) << i;
      EXPECT_EQ(seconds[i].afterGap, i == 0 || i == 5 || i == 30) << i;
    }
  }
}

TEST(LevelHistory, WhatNoMeterTellsIsNoReadingAndFrequenciesAreOfTheirTime) {
  LevelHistory history;
  EXPECT_FALSE(history.last());
  for (const Long level : {INT32_MIN, -251, 151, INT32_MAX}) history.add(kFirstMoment, level);
  EXPECT_TRUE(history.empty());
  EXPECT_EQ(four(history, kFirstMoment, kFirstMoment)[0].readings, 0);
  history.tuned(kFirstMoment, 6'070'000);
  history.tuned(kFirstMoment + 10, 6'070'000);
  history.tuned(kFirstMoment + 500, 7'100'000);
  EXPECT_EQ(history.tuned().size(), 2u);
  EXPECT_EQ(history.frequencyAt(kFirstMoment - 1), -1);
  EXPECT_EQ(history.frequencyAt(kFirstMoment + 499), 6'070'000);
  EXPECT_EQ(history.frequencyAt(kFirstMoment + 500), 7'100'000);
}

TEST(LevelClock, NeverGoesBackAndCountsTheSleep) {
  LevelClock clock;
  Instant steady{};
  const auto at = [&](int passed, WallTime wall) {
    return clock.at(steady += milliseconds(passed), wall);
  };
  EXPECT_EQ(at(0, kFirstMoment), kFirstMoment);
  EXPECT_EQ(at(1000, kFirstMoment + 1000), kFirstMoment + 1000);
  EXPECT_EQ(at(1000, kFirstMoment - kHour), kFirstMoment + 2000) << "set back by an hour";
  EXPECT_FALSE(clock.slept());
  EXPECT_EQ(clock.utc(kFirstMoment + 500), kFirstMoment + 500);
  EXPECT_EQ(clock.utc(kFirstMoment + 2500), kFirstMoment - kHour + 500);
  EXPECT_EQ(at(1000, kFirstMoment), kFirstMoment + 2000 + kHour)
      << "slept, and the steady clock stood still";
  EXPECT_TRUE(clock.slept());
  EXPECT_EQ(at(kHour, kFirstMoment + kHour), kFirstMoment + 2000 + 2 * kHour)
      << "slept, and it ran";
  EXPECT_TRUE(clock.slept());
  at(100, kFirstMoment + 1000 * 24 * kHour);
  EXPECT_EQ(clock.now(), kFirstMoment + 2100 + 2 * kHour) << "nobody sleeps for 1000 days";
}

TEST(LevelClock, KeepsTimeHoweverOftenItIsAsked) {
  LevelClock clock;
  const Instant start{};
  for (int i = 0; i <= 100'000; ++i)
    clock.at(start + std::chrono::microseconds(i * 600), kFirstMoment + i * 6 / 10);
  EXPECT_EQ(clock.now(), kFirstMoment + 60'000);
  EXPECT_EQ(clock.utc(kFirstMoment + 100), kFirstMoment + 100);
}

TEST(Comparison, ComparesOnlySecondsOfBothSinceTheLastChange) {
  LevelHistory a, b;
  feed(a, kFirstMoment, 100, [](int i) { return i / 20 % 2 ? -70 : -74; });
  feed(b, kFirstMoment, 90, [](int) { return -73; });
  const LevelTime now = kFirstMoment + 100'000;
  Comparison result = compare({a, 0, 0}, {b, 0, 0}, now, 60);
  EXPECT_EQ(result.seconds, 50);
  EXPECT_NEAR(result.mean, 1, 1e-6);
  EXPECT_NEAR(result.deviation, 2.02, 0.01);
  EXPECT_NEAR(result.ahead, 0.5, 1e-6);
  EXPECT_EQ(result.now, 3);
  result = compare({a, -0.5, kFirstMoment + 79'500}, {b, 1.0, 0}, now, 60);
  EXPECT_EQ(result.seconds, 10);
  EXPECT_NEAR(result.mean, -0.5, 1e-6);
  EXPECT_EQ(comparisonLine("A", "B", result),
            "A over B: -0.5 dB mean of 10 s, now +1.5, deviation 2.1, ahead 50 %");
  EXPECT_EQ(compare({a}, {b, 0, now}, now, 60).seconds, 0);
}

TEST(Comparison, SaysWhichSettingsDiffer) {
  const LevelSettings a{6'070'000, "AM", 6000, "Slow", 0};
  EXPECT_EQ(differingSettings(a, a), "");
  EXPECT_EQ(differingSettings(a, {6'070'001, "USB", 2700, "Fast", 10}),
            "frequency, mode, filter, AGC, attenuator");
  EXPECT_EQ(differingSettings(a, {6'070'000, "AM", 0, "", -1}), "") << "a receiver without them";
}

}  // namespace
}  // namespace kelvane
