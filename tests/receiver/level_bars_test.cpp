#include "receiver/level_bars.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

constexpr char kUnlike[] =
    "[Receiver]\r\nName=Near\r\nFrequency=6070000\r\nSquelch=-100\r\n"
    "[Receiver]\r\nName=Deaf\r\nUntold=meter squelch\r\n"
    "[Receiver]\r\nName=Far\r\nFrequency=23000000\r\nSquelch=-80\r\n";

TEST(LevelBars, ShowEachReceiverOnItsTabAndTheShownOneWithItsThreshold) {
  PanelRig rig(kUnlike);
  rig.start();
  const auto& tabs = rig.view().TabStrip.tabs;
  EXPECT_GT(tabs[0].level, tabs[2].level) << "a strong station, and noise";
  EXPECT_GE(tabs[2].level, 0);
  EXPECT_EQ(tabs[1].level, MeterBar::kNone) << "no level is not the lowest";
  const MeterBar& meter = rig.view().meter;
  EXPECT_TRUE(meter.live);
  EXPECT_NEAR(meter.level, tabs[0].level, 40);
  EXPECT_EQ(meter.squelch, placeOnBar(-100));
  EXPECT_FALSE(meter.decibels);
  rig.click(id::SM);
  EXPECT_TRUE(meter.decibels) << "the scale is that of the reading";

  rig.panel->tabClicked(1);
  EXPECT_EQ(meter, MeterBar{.decibels = true}) << "nothing of another receiver's";
  rig.panel->tabClicked(2);
  EXPECT_EQ(meter.squelch, placeOnBar(-80));
  EXPECT_NEAR(meter.level, tabs[2].level, 40) << "known before it is shown";
}

TEST(LevelBars, AreEmptyWithoutALinkAndGoWithTheirReceiver) {
  PanelRig rig(kUnlike);
  rig.start();
  rig.sondrel.core.SetRxConnect(2, false);
  rig.sondrel.core.SetRxConnect(0, false);
  rig.run(milliseconds(200));
  EXPECT_EQ(rig.view().TabStrip.tabs[0].level, MeterBar::kNone);
  EXPECT_EQ(rig.view().TabStrip.tabs[2].level, MeterBar::kNone);
  EXPECT_FALSE(rig.view().meter.live);

  PanelRig moved(kUnlike);
  moved.start();
  moved.panel->tabClicked(2);
  moved.sondrel.windows.edit = [](sondrel::DriversModel& model,
                                  const std::function<Result<>()>& apply) {
    model.remove(1);
    EXPECT_TRUE(apply());
  };
  moved.sondrel.core.OpenRxConfig("Kelvane", 1);
  moved.sondrel.core.deliverEvents();
  ASSERT_EQ(moved.view().TabStrip.tabs.size(), 2u);
  EXPECT_GE(moved.view().TabStrip.tabs[1].level, 0);
  EXPECT_EQ(moved.view().meter.squelch, placeOnBar(-80));
}

TEST(LevelBars, ChangeAtMostTwentyTimesASecondAndThePeakFallsWithoutReadings) {
  PanelRig rig(kUnlike);
  rig.start();
  int changes = 0;
  for (int i = 0; i < 1000; ++i) {
    const MainView before = rig.view();
    rig.panel->receiverEvents().RxSMtUpdated(0, 0, 0, -100 + i % 40, "S5");
    rig.panel->receiverEvents().RxSMtUpdated(2, 0, 0, -100 + i % 40, "S5");
    rig.run(milliseconds(1));
    changes += before.meter != rig.view().meter || before.TabStrip != rig.view().TabStrip;
  }
  EXPECT_GE(changes, 15);
  EXPECT_LE(changes, 21);

  rig.panel->tabClicked(1);
  rig.panel->receiverEvents().RxSMtUpdated(1, 0, 0, -53, "S9+20");
  rig.run(milliseconds(60));
  rig.panel->receiverEvents().RxSMtUpdated(1, 0, 0, -93, "S5");
  rig.run(milliseconds(60));
  EXPECT_EQ(rig.view().meter.peak, placeOnBar(-53));
  rig.run(milliseconds(2000));
  EXPECT_LT(rig.view().meter.peak, placeOnBar(-60));
  EXPECT_GT(rig.view().meter.peak, placeOnBar(-75));
  rig.run(milliseconds(3000));
  EXPECT_EQ(rig.view().meter.peak, rig.view().meter.level);
}

}  // namespace
}  // namespace kelvane
