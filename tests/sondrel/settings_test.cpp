#include <gtest/gtest.h>

#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SondrelRig;
using Lines = std::vector<std::string>;

class Settings : public testing::Test {
 protected:
  Settings() {
    rig.open();
    rig.run(milliseconds(1100));
    rig.listener.clear();
  }
  Lines heard() {
    rig.pump();
    const Lines lines = rig.listener.lines();
    rig.listener.clear();
    return lines;
  }

  SondrelRig rig;
  SondrelCore& core = rig.core;
};

TEST_F(Settings, AModeBringsTheFilterThatWasLastUsedWithIt) {
  core.SetRxMode(kHarrow, 4);
  EXPECT_EQ(core.GetRxFilter(kHarrow), 500);
  EXPECT_EQ(heard(), (Lines{"RxModUpdated 0 4 500", "RxFltUpdated 0 500"}));
  core.SetRxFilter(kHarrow, 160);
  EXPECT_EQ(heard(), Lines{"RxFltUpdated 0 150"}) << "the nearest that the mode has";
  core.SetRxMode(kHarrow, 0);
  core.SetRxMode(kHarrow, 4);
  EXPECT_EQ(core.GetRxFilter(kHarrow), 150);
  EXPECT_EQ(heard().back(), "RxFltUpdated 0 150");
  core.SetRxMode(kHarrow, 4);
  EXPECT_EQ(heard(), Lines{}) << "no change, no event";
}

TEST_F(Settings, ModesAreKnownByNumberAndNameWhereTheReceiverHasThem) {
  EXPECT_EQ(core.GetRxModeName(kHarrow, 2).value(), Text("USB"));
  EXPECT_EQ(core.GetRxModeValue(kHarrow, "usb"), 2);
  EXPECT_EQ(core.GetRxModeValue(kHarrow, "Drm"), 8);
  EXPECT_EQ(core.GetRxModeValue(kTern, "CW"), -1) << "it has AM and USB alone";
  for (const char* unknown : {"", "US", "USB ", "\xC3\xBC"}) {
    EXPECT_EQ(core.GetRxModeValue(kHarrow, unknown), -1) << unknown;
  }
  EXPECT_EQ(core.GetRxModeName(kTern, 4).value(), Text());
  for (const Setting bad : {-1, 9, 99, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(core.SetRxMode(kHarrow, bad), Outcome::Failed);
    EXPECT_EQ(core.GetRxModeName(kHarrow, bad).value(), Text());
  }
  EXPECT_TRUE(core.GetRxModeFlag(kHarrow, 0));
  EXPECT_FALSE(core.GetRxModeFlag(kHarrow, 2));
  EXPECT_EQ(core.GetRxModeCount(kTern), 3);
  EXPECT_TRUE(core.HasRxMode(kTern, 2));
  EXPECT_FALSE(core.HasRxMode(kTern, 1));
  EXPECT_EQ(heard(), Lines{});
}

TEST_F(Settings, NextStepsThroughWhatTheReceiverHasAndWraps) {
  using Values = std::vector<Setting>;
  const auto around = [&](Index rx, auto next, auto get, int times) {
    Values values;
    while (times-- > 0) {
      (core.*next)(rx);
      values.push_back((core.*get)(rx).value());
    }
    return values;
  };
  using Core = SondrelCore;
  EXPECT_EQ(around(kLoom, &Core::NextRxMode, &Core::GetRxMode, 4), (Values{8, 0, 1, 7}));
  EXPECT_EQ(around(kQuill, &Core::NextRxFilter, &Core::GetRxFilter, 5),
            (Values{3000, 4000, 1800, 2400, 2700}));
  EXPECT_EQ(around(kLoom, &Core::NextRxAgc, &Core::GetRxAgc, 3), (Values{2, 3, 0}));
  EXPECT_EQ(around(kHarrow, &Core::NextRxNBl, &Core::GetRxNBl, 3), (Values{1, 2, 0}));
  heard();
  EXPECT_EQ(around(kHarrow, &Core::NextRxAtt, &Core::GetRxAttDb, 4), (Values{10, 20, 30, 0}));
  EXPECT_EQ(heard(), (Lines{"RxAttUpdated 0 1 10", "RxAttUpdated 0 2 20", "RxAttUpdated 0 3 30",
                            "RxAttUpdated 0 0 0"}));
}

TEST_F(Settings, AReceiverWithoutASettingSaysSo) {
  EXPECT_FALSE(core.HasRxAgc(kTern, -1));
  EXPECT_FALSE(core.HasRxNBl(kTern, -1));
  EXPECT_FALSE(core.HasRxAtt(kTern, -1));
  EXPECT_FALSE(core.HasRxHFFilter(kTern));
  EXPECT_EQ(core.GetRxFilterCount(kTern), 1);
  EXPECT_EQ(core.GetRxAgc(kTern), -1);
  EXPECT_EQ(core.NextRxAgc(kTern), Outcome::Failed);
  EXPECT_EQ(core.SetRxAgc(kTern, 0), Outcome::Failed);
  EXPECT_EQ(core.NextRxNBl(kTern), Outcome::Failed);
  EXPECT_EQ(core.NextRxAtt(kTern), Outcome::Failed);
  EXPECT_EQ(core.SetRxHFFilter(kTern, 1), Outcome::Failed);
  EXPECT_EQ(core.GetRxType(kQuill).value(), Text());
  EXPECT_EQ(heard(), Lines{});
}

TEST_F(Settings, NamesAndSecondValuesBelongToTheValueAskedFor) {
  EXPECT_TRUE(core.HasRxAgc(kLoom, 3));
  EXPECT_FALSE(core.HasRxAgc(kLoom, 1));
  EXPECT_EQ(core.GetRxAgcCount(kLoom), 4);
  EXPECT_EQ(core.GetRxAgcName(kLoom, 3).value(), Text("Off"));
  EXPECT_EQ(core.GetRxAgcValue(kLoom, "FAST"), 2);
  EXPECT_EQ(core.GetRxAgcValue(kLoom, "medium"), -1);
  EXPECT_EQ(core.GetRxAgcAux(kLoom, 0), 2000);
  EXPECT_EQ(core.GetRxNBlName(kHarrow, 0).value(), Text("Off"));
  EXPECT_GT(core.GetRxNBlAux(kHarrow, 2), core.GetRxNBlAux(kHarrow, 1));
  EXPECT_EQ(core.GetRxAttName(kHarrow, 0).value(), Text("Off"));
  core.SetRxAgc(kHarrow, 2);
  core.NextRxNBl(kHarrow);
  EXPECT_EQ(heard(), (Lines{"RxAgcUpdated 0 2 100", "RxNBlUpdated 0 1 33"}));
}

TEST_F(Settings, ARefusedSettingIsPutRightByAnEvent) {
  SimulatedFaults faults;
  faults.answerTime = milliseconds(100);
  faults.refused = {Item::Mode, Item::Agc};
  core.setFaults(kHarrow, faults);
  core.SetRxMode(kHarrow, 4);
  core.SetRxAgc(kHarrow, 2);
  EXPECT_EQ(core.GetRxMode(kHarrow), 4);
  EXPECT_EQ(core.GetRxFilter(kHarrow), 500);
  rig.run(milliseconds(250));
  EXPECT_EQ(core.GetRxMode(kHarrow), 0);
  EXPECT_EQ(core.GetRxFilter(kHarrow), 6000);
  EXPECT_EQ(heard(),
            (Lines{"RxModUpdated 0 0 6000", "RxFltUpdated 0 6000", "RxAgcUpdated 0 0 2000"}));
}

TEST_F(Settings, AFilterForTheNewestModeIsNotLostOnASlowLink) {
  SimulatedFaults faults;
  faults.answerTime = milliseconds(100);
  core.setFaults(kHarrow, faults);
  core.SetRxMode(kHarrow, 0);
  core.SetRxMode(kHarrow, 1);
  core.SetRxFilter(kHarrow, 25'000);
  core.SetRxMode(kHarrow, 4);
  core.SetRxFilter(kHarrow, 290);
  EXPECT_EQ(core.GetRxFilter(kHarrow), 300) << "of the mode that is on its way";
  rig.run(milliseconds(1000));
  EXPECT_EQ(core.GetRxMode(kHarrow), 4);
  EXPECT_EQ(core.GetRxFilter(kHarrow), 300);
  const Lines lines = heard();
  EXPECT_EQ(lines.back(), "RxFltUpdated 0 300");
}

TEST_F(Settings, TheHfFilterIsOnOrOff) {
  EXPECT_EQ(core.GetRxHFFilter(kHarrow), 1);
  core.SetRxHFFilter(kHarrow, 0);
  core.SetRxHFFilter(kHarrow, -1);
  EXPECT_EQ(heard(), (Lines{"RxHFFUpdated 0 0", "RxHFFUpdated 0 1"}));
}

TEST_F(Settings, IoLinesAreSwitchedWhereTheyCanBe) {
  EXPECT_EQ(core.SetRxOut(kHarrow, 3, 5), Outcome::Done);
  EXPECT_EQ(core.GetRxOut(kHarrow, 3), 1);
  EXPECT_EQ(core.GetRxOut(kHarrow, 0), 0);
  EXPECT_EQ(core.SetRxOut(kHarrow, 4, 1), Outcome::Failed);
  EXPECT_EQ(core.SetRxOut(kHarrow, -1, 1), Outcome::Failed);
  EXPECT_EQ(core.GetRxOut(kHarrow, 99), 0);
  EXPECT_EQ(core.SetRxOut(kTern, 0, 1), Outcome::Failed);
  EXPECT_EQ(core.GetRxOutCount(kLoom), -1);
  EXPECT_EQ(core.SetRxOut(kLoom, 0, 1), Outcome::Failed) << "it can only be read";
  core.turnLine(kLoom, 0, 1);
  EXPECT_EQ(core.GetRxOut(kLoom, 0), 1);
  EXPECT_EQ(heard(), (Lines{"RxOutUpdated 0 3 1", "RxOutUpdated 3 0 1"}));
}

TEST_F(Settings, TheClockIsTaken) {
  EXPECT_EQ(core.SetRxTime(kHarrow, ""), Outcome::Done);
  EXPECT_EQ(core.SetRxTime(kHarrow, "2026-01-02 03:04:05"), Outcome::Done);
  EXPECT_EQ(core.simulated(kHarrow)->time(), "2026-01-02 03:04:05");
  core.SetRxConnect(kHarrow, false);
  EXPECT_EQ(core.SetRxTime(kHarrow, ""), Outcome::Failed);
}

}  // namespace
}  // namespace kelvane::sondrel
