#include <gtest/gtest.h>

#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SondrelRig;
using Lines = std::vector<std::string>;

/// Three receivers: a full one, one with a small range and few settings, and a full one again.
class Forward : public testing::Test {
 protected:
  Forward() {
    rig.configure(
        "[Receiver 1]\nName=A\nAttenuator=0 10 20 30\n"
        "[Receiver 2]\nName=B\nMinimum=1600000\nMaximum=4200000\nFinestStep=100\nModes=AM USB\n"
        "Bfo=none\nAgc=slow\nBlanker=0\nAttenuator=none\nHfFilter=no\n"
        "[Receiver 3]\nName=C\nAttenuator=0 6 12 18\nBfo=-1000 1000\n");
    rig.open();
    rig.listener.clear();
  }
  std::vector<Hz> frequencies() {
    std::vector<Hz> result;
    for (Index rx = 0; rx < 3; ++rx) result.push_back(core.GetRxFrequency(rx, kTuned));
    return result;
  }

  SondrelRig rig;
  SondrelCore& core = rig.core;
};

TEST_F(Forward, NothingMovesTogetherUntilItIsAsked) {
  core.SetRxFrequency(0, false, 2'000'000);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{2'000'000, 4'200'000, 7'100'000}));
  for (const Long bad : {-3, 3, 8, 99, INT32_MIN}) {
    EXPECT_EQ(core.SetRxForward(bad), Outcome::Failed) << bad;
  }
  for (const Long good : {-1, -2, 0, 2}) EXPECT_EQ(core.SetRxForward(good), Outcome::Done);
}

TEST_F(Forward, EveryReceiversChangesGoToAllOthersOnce) {
  core.SetRxForward(kForwardAll);
  core.SetRxFrequency(0, false, 3'000'050);
  rig.pump();
  EXPECT_EQ(rig.listener.lines(), (Lines{"RxFrqUpdated 0 3000050 0", "RxFrqUpdated 1 3000100 0",
                                         "RxFrqUpdated 2 3000050 0"}))
      << "the rounding of the second does not come back to the others";
  core.SetRxFrequency(1, false, 2'000'000);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{2'000'000, 2'000'000, 2'000'000}));
}

TEST_F(Forward, WhatIsNoChangeOrIsRefusedIsNotPassedOn) {
  core.SetRxForward(0);
  core.SetRxFrequency(0, false, 3'000'000);
  core.SetRxFrequency(2, false, 4'000'000);
  core.SetRxFrequency(0, false, 3'000'000);
  EXPECT_EQ(core.GetRxFrequency(2, kTuned), 4'000'000);
  SimulatedFaults faults;
  faults.refused = {Item::Frequency};
  core.setFaults(0, faults);
  core.SetRxFrequency(0, false, 3'500'000);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{3'000'000, 3'000'000, 4'000'000}));
}

TEST_F(Forward, OnlyTheMastersChangesGoToTheSlaves) {
  core.SetRxForward(2);
  core.SetRxFrequency(0, false, 2'500'000);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{2'500'000, 4'200'000, 7'100'000}));
  core.SetRxFrequency(2, false, 10'000'000);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{10'000'000, 4'200'000, 10'000'000}))
      << "a slave goes as far as its range reaches";
  core.SetRxForward(kForwardNone);
  core.SetRxFrequency(2, false, 2'000'000);
  EXPECT_EQ(core.GetRxFrequency(0, kTuned), 10'000'000);
}

TEST_F(Forward, AllSettingsArePassedAsEachSlaveCanTakeThem) {
  core.SetRxForward(0);
  core.SetRxMode(0, 4);
  core.SetRxFilter(0, 300);
  core.SetRxAgc(0, 2);
  core.NextRxNBl(0);
  core.NextRxAtt(0);
  core.SetRxBfo(0, -3000);
  core.SetRxHFFilter(0, 0);
  EXPECT_EQ(core.GetRxMode(2), 4);
  EXPECT_EQ(core.GetRxFilter(2), 300);
  EXPECT_EQ(core.GetRxAgc(2), 2);
  EXPECT_EQ(core.GetRxNBl(2), 1);
  EXPECT_EQ(core.GetRxAttDb(2), 12) << "10 dB are asked for; 12 are nearer than 6";
  EXPECT_EQ(core.GetRxBfo(2), -1000);
  EXPECT_EQ(core.GetRxHFFilter(2), 0);
  EXPECT_EQ(core.GetRxMode(1), 0) << "it has no CW";
  EXPECT_EQ(core.GetRxFilter(1), 3000) << "the operator's own choice of a filter goes to all";
  EXPECT_EQ(core.GetRxAgc(1), 0);
}

TEST_F(Forward, TheFilterOfAModeThatASlaveLacksStaysAway) {
  core.SetRxForward(0);
  core.SetRxMode(0, 4);
  EXPECT_EQ(core.GetRxFilter(1), 6000);
  EXPECT_EQ(core.GetRxFilter(2), 500);
}

TEST_F(Forward, TheKnobIsPassedOnButTheSlavesEventsAreNotTheReceiversOwn) {
  core.SetRxForward(kForwardAll);
  core.turnKnob(2, Item::Frequency, 3'000'000);
  rig.pump();
  std::vector<std::pair<std::string, bool>> heard;
  for (const auto& h : rig.listener.heard) {
    if (h.name == "RxFrqUpdated") heard.emplace_back(h.line, h.global);
  }
  EXPECT_EQ(heard,
            (std::vector<std::pair<std::string, bool>>{{"RxFrqUpdated 2 3000000 1", true},
                                                       {"RxFrqUpdated 0 3000000 0", false},
                                                       {"RxFrqUpdated 1 3000000 0", false}}));
}

TEST_F(Forward, ASlaveThatRefusesOrIsGoneDoesNotHoldUpTheOthers) {
  core.SetRxForward(0);
  SimulatedFaults faults;
  faults.refused = {Item::Frequency};
  core.setFaults(1, faults);
  core.SetRxFrequency(0, false, 3'000'000);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{3'000'000, 4'200'000, 3'000'000}));
  core.SetRxConnect(1, false);
  rig.pump();
  rig.listener.clear();
  core.SetRxFrequency(0, false, 4'000'000);
  rig.pump();
  EXPECT_EQ(rig.listener.lines(), (Lines{"RxFrqUpdated 0 4000000 0", "RxFrqUpdated 2 4000000 0"}))
      << "a receiver that is switched off is not asked";
}

TEST_F(Forward, SlavesFollowASlowMasterWithEachStepThatItConfirms) {
  core.SetRxForward(kForwardAll);
  SimulatedFaults faults;
  faults.answerTime = milliseconds(100);
  for (const Index rx : {0, 2}) core.setFaults(rx, faults);
  for (int i = 1; i <= 20; ++i) {
    core.SetRxFrequency(0, false, 3'000'000 + i * 1000);
    rig.run(milliseconds(30));
  }
  rig.run(milliseconds(2000));
  EXPECT_EQ(frequencies(), (std::vector<Hz>{3'020'000, 3'020'000, 3'020'000}));
  EXPECT_LE(rig.listener.count("RxFrqUpdated"), 15u) << "no echo goes round";
  EXPECT_GE(rig.listener.count("RxFrqUpdated"), 7u);
}

TEST_F(Forward, RecallingAChannelMovesTheSlavesToo) {
  core.SetRxChannel(0, 5, 3'500'000, 0, 2, 2400, 0, 0);
  core.SetRxForward(0);
  core.SelectRxChannel(0, 5);
  EXPECT_EQ(frequencies(), (std::vector<Hz>{3'500'000, 3'500'000, 3'500'000}));
  EXPECT_EQ(core.GetRxMode(1), 2);
  EXPECT_EQ(core.GetRxFilter(2), 2400);
}

}  // namespace
}  // namespace kelvane::sondrel
