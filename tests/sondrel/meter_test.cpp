#include <gtest/gtest.h>

#include <cmath>

#include "components/sondrel/s_meter.h"
#include "components/sondrel/simulated/hf_spectrum.h"
#include "tests/fakes/mode_settings.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SondrelRig;
using Lines = std::vector<std::string>;

/// The strongest level of a minute, by which fading does not matter.
double strongest(Hz frequency, Setting mode, Hz filter) {
  double level = -1000;
  for (int i = 0; i < 1200; ++i) {
    const Instant now{milliseconds(50 * i)};
    level = std::max(level, levelIn(passband(frequency, mode, filter), now));
  }
  return level;
}

TEST(SMeter, ReadsInUnitsOfSixDecibels) {
  EXPECT_EQ(sUnits(-73), "S9");
  EXPECT_EQ(sUnits(-74), "S8");
  EXPECT_EQ(sUnits(-79), "S8");
  EXPECT_EQ(sUnits(-85), "S7");
  EXPECT_EQ(sUnits(-53), "S9+20");
  EXPECT_EQ(sUnits(-127), "S0");
  EXPECT_EQ(sUnits(-200), "S0");
  EXPECT_EQ(meterBar(-127), 0);
  EXPECT_EQ(meterBar(-13), 1000);
  EXPECT_EQ(meterBar(-73), 473);
  EXPECT_EQ(meterBar(-300), 0);
  EXPECT_EQ(meterBar(100), 1000);
}

TEST(HfSpectrum, TransmittersStandAboveTheNoiseAtTheirPlaces) {
  for (const Transmitter& t : transmitters()) {
    const double there = strongest(t.frequency, kAm, 6000);
    const double beside = strongest(t.frequency + 150'000, kAm, 6000);
    EXPECT_GT(there, beside + 3) << t.frequency;
  }
}

TEST(HfSpectrum, TheModeDecidesWhichSideIsHeard) {
  // A station in USB at 14 200 kHz and one in LSB at 3 650 kHz.
  EXPECT_GT(strongest(14'200'000, kUsb, 2700), strongest(14'200'000, kLsb, 2700) + 10);
  EXPECT_GT(strongest(3'650'000, kLsb, 2700), strongest(3'650'000, kUsb, 2700) + 10);
  // The carrier at 6 070 kHz is outside a narrow filter 2 kHz away, and inside a wide one.
  EXPECT_GT(strongest(6'072'000, kAm, 6000), strongest(6'072'000, kAm, 500) + 6);
}

class Meter : public testing::Test {
 protected:
  /// A single receiver with these keys, up.
  void start(const std::string& keys) {
    rig.configure("[Receiver 1]\nName=A\n" + keys);
    rig.open();
    rig.listener.clear();
  }
  double mean(milliseconds time) {
    rig.listener.clear();
    rig.run(time);
    double sum = 0;
    const Lines lines = rig.listener.lines("RxSMtUpdated");
    for (const std::string& line : lines) {
      std::istringstream words(line);
      std::string name;
      Long rx, bar, over, level;
      words >> name >> rx >> bar >> over >> level;
      EXPECT_EQ(over, level + 73);
      EXPECT_EQ(bar, meterBar(level));
      EXPECT_TRUE(line.ends_with(" " + sUnits(level))) << line;
      sum += level;
    }
    return sum / static_cast<double>(lines.size());
  }

  SondrelRig rig;
};

TEST_F(Meter, ReadsTwentyTimesASecondWhileTheReceiverAnswers) {
  start("Frequency=9580000\nMode=AM\n");
  rig.run(milliseconds(1000));
  EXPECT_EQ(rig.listener.count("RxSMtUpdated"), 20u);
  EXPECT_EQ(rig.core.GetRxSMtText(0, 2).value(),
            sUnits(static_cast<Long>(std::stol(rig.core.GetRxSMtText(0, 1).value()))));
  EXPECT_FALSE(rig.core.GetRxSMtText(0, 3).ok());
  rig.core.SetRxConnect(0, false);
  rig.listener.clear();
  rig.run(milliseconds(1000));
  EXPECT_EQ(rig.listener.count("RxSMtUpdated"), 0u);
}

TEST_F(Meter, WhileNobodyListensReadingsDoNotPileUp) {
  start("");
  for (int i = 0; i < 1000; ++i) {
    rig.clock.advance(milliseconds(50));
    rig.core.tick(rig.clock.now);
  }
  rig.core.deliverEvents();
  EXPECT_EQ(rig.listener.count("RxSMtUpdated"), 1u);
}

TEST_F(Meter, AfterALongPauseOneReadingComesNotAllThatWereMissed) {
  start("");
  rig.clock.advance(std::chrono::hours(1));
  for (int i = 0; i < 3; ++i) rig.pump();
  EXPECT_EQ(rig.listener.count("RxSMtUpdated"), 1u);
}

TEST_F(Meter, AttenuatorAndPreselectorAreHeard) {
  start("Frequency=23000000\nMode=USB\nAttenuator=0 20\n");
  rig.core.SetRxHFFilter(0, 1);
  const double plain = mean(milliseconds(20'000));
  rig.core.NextRxAtt(0);
  EXPECT_NEAR(mean(milliseconds(20'000)), plain - 20, 1);
  rig.core.NextRxAtt(0);
  rig.core.SetRxHFFilter(0, 0);
  EXPECT_GT(mean(milliseconds(20'000)), plain + 2);
}

TEST_F(Meter, TheBlankerTakesTheCracklingOut) {
  start("Frequency=23000000\nMode=USB\nBlanker=1\n");
  const double crackling = mean(milliseconds(60'000));
  rig.core.NextRxNBl(0);
  EXPECT_LT(mean(milliseconds(60'000)), crackling - 0.1);
}

TEST_F(Meter, ASquelchLevelThatIsNotToldIsNoLevel) {
  start("Frequency=23000000\nMode=AM\nUntold=squelch\n");
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.core.GetRxSqlLevel(0), -999);
  start("Frequency=23000000\nMode=AM\nSquelch=-80\n");
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.core.GetRxSqlLevel(0), -80);
  rig.core.SetRxConnect(0, false);
  EXPECT_EQ(rig.core.GetRxSqlLevel(0), -999) << "nobody tells it any more";
}

TEST_F(Meter, TheSquelchOpensOnAStationAndClosesBesideIt) {
  start("Frequency=23000000\nMode=AM\nSquelch=-80\n");
  rig.core.SetRxFrequency(0, false, 9'580'000);
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.listener.lines("RxSqlUpdated"), Lines{"RxSqlUpdated 0 1 -80"});
  EXPECT_EQ(rig.core.GetRxSql(0), 1);
  EXPECT_EQ(rig.core.GetRxSqlLevel(0), -80);
  rig.core.SetRxFrequency(0, false, 23'000'000);
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.listener.lines("RxSqlUpdated").back(), "RxSqlUpdated 0 0 -80");
  EXPECT_EQ(rig.core.GetRxSql(0), 0);
}

}  // namespace
}  // namespace kelvane::sondrel
