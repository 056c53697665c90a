#include "ui/meter_bar.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

const Instant kStart{std::chrono::hours(1)};

Instant after(int ms) { return kStart + milliseconds(ms); }

TEST(LevelMeter, PutsLevelsOnItsScale) {
  EXPECT_EQ(placeOnBar(-127), 0);
  EXPECT_EQ(placeOnBar(-100), 300);
  EXPECT_EQ(placeOnBar(-73), MeterBar::kS9);
  EXPECT_EQ(placeOnBar(-43), 800);
  for (const double beyond : {-13.0, 0.0, 1e9}) EXPECT_EQ(placeOnBar(beyond), MeterBar::kFull);
  EXPECT_EQ(placeOnBar(-1e9), 0);
  // Each word of either scale stands where its level is.
  for (const ScaleMark& mark : meterScale(true))
    EXPECT_NEAR(placeOnBar(std::stod(std::string(mark.text))), mark.place, 1) << mark.text;
  for (const ScaleMark& mark : meterScale(false)) {
    const double number = std::stod(std::string(mark.text.substr(mark.text[0] == 'S' ? 1 : 0)));
    const double level = number > 9 ? -73 + number : -127 + 6 * number;
    EXPECT_NEAR(placeOnBar(level), mark.place, 1) << mark.text;
  }
  EXPECT_EQ(sUnitsOf(-73), "S9");
  EXPECT_EQ(sUnitsOf(-53.2), "S9+20");
  EXPECT_EQ(sUnitsOf(-200), "S0");
}

TEST(LevelMeter, HoldsThePeakForASecondAndAHalfAndLetsItFallToTheLevel) {
  LevelMeter meter;
  meter.reading(-53, kStart);
  meter.reading(-93, after(100));
  EXPECT_EQ(meter.peak(after(1500)), -53);
  EXPECT_NEAR(meter.peak(after(2000)), -63, 0.01) << "20 dB a second";
  EXPECT_TRUE(meter.moves(after(2000)));
  EXPECT_EQ(meter.peak(after(3500)), -93);
  EXPECT_FALSE(meter.moves(after(3600)));
  meter.reading(-70, after(2000));
  EXPECT_NEAR(meter.peak(after(2100)), -65, 0.01) << "a lower reading does not hold it up";
  meter.reading(-60, after(2100));
  EXPECT_EQ(meter.peak(after(3600)), -60) << "held anew";
}

TEST(LevelMeter, TellsTheMeanOfThreeSecondsHoweverManyReadingsCome) {
  LevelMeter meter;
  for (int i = 0; i < 30; ++i) meter.reading(i % 2 ? -80 : -60, after(100 * i));
  EXPECT_EQ(meter.bar(false, after(2900)).mean, placeOnBar(-70));
  for (int i = 0; i < 30; ++i) meter.reading(-100, after(3000 + 100 * i));
  EXPECT_EQ(meter.bar(false, after(5900)).mean, placeOnBar(-100)) << "what is older is gone";
  for (int i = 0; i < 100'000; ++i) meter.reading(-50, after(6000));
  EXPECT_EQ(meter.bar(false, after(6000)).mean, placeOnBar(-50));
}

TEST(LevelMeter, SaysWhatItShows) {
  LevelMeter meter;
  EXPECT_EQ(spokenBar(meter.bar(false, kStart)), "Signal level: none");
  meter.reading(-53, kStart);
  EXPECT_EQ(spokenBar(meter.bar(false, kStart)), "Signal level: S9+20");
  meter.reading(-85, kStart);
  meter.setSquelch(-110);
  EXPECT_EQ(spokenBar(meter.bar(false, kStart)),
            "Signal level: S7, peak S9+20, squelch opens at S2");
  EXPECT_EQ(spokenBar(meter.bar(true, kStart)),
            "Signal level: -85 dBm, peak -53 dBm, squelch opens at -110 dBm");
}

TEST(LevelMeter, ShowsNothingOfAReceiverThatTellsNothing) {
  LevelMeter meter;
  EXPECT_EQ(meter.bar(false, kStart), MeterBar{});
  meter.reading(2'000'000'000, kStart);
  EXPECT_EQ(meter.bar(true, kStart),
            (MeterBar{.live = true, .decibels = true, .level = 1000, .peak = 1000, .mean = 1000}));
  meter.setSquelch(-73);
  EXPECT_EQ(meter.bar(true, kStart).squelch, MeterBar::kS9);
  meter.clear();
  EXPECT_EQ(meter.bar(true, after(10)), (MeterBar{.decibels = true}));
  meter.reading(-127, after(20));
  EXPECT_EQ(meter.bar(true, after(20)),
            (MeterBar{.live = true, .decibels = true, .level = 0, .peak = 0, .mean = 0}))
      << "of the time before, nothing";
}

}  // namespace
}  // namespace kelvane
