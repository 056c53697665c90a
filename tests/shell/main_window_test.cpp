#include "shell/main_window.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

TEST(MainWindow, ComesToRestOnTheFirstReceiverWhoseLinkIsTheSlowOne) {
  PanelRig rig;
  rig.start(milliseconds(0));
  EXPECT_EQ(rig.view().TabStrip.tabs.size(), 4u);
  EXPECT_NE(rig.view().TabStrip.selected, 0) << "a link that comes up moves the display there";
  rig.run(milliseconds(3000));
  EXPECT_EQ(rig.view().TabStrip.selected, 0);
  EXPECT_EQ(rig.view().TabStrip.tabs[0].caption, "&Harrow");
  EXPECT_EQ(rig.view().caption, "Kelvane 1.0.0 - Receiver Harrow [Type: HF 30]");
  EXPECT_EQ(rig.digits(), "  6070000");
  EXPECT_FALSE(rig.view().RxMask.visible);
  EXPECT_EQ(rig.view().RNG.text, "1R");
  for (const Tab& tab : rig.view().TabStrip.tabs) EXPECT_TRUE(tab.highlighted);
}

TEST(MainWindow, TunesTheShownReceiverByTypedKilohertz) {
  PanelRig rig;
  rig.start();
  rig.type("7050\r");
  EXPECT_EQ(rig.digits(), "  7050000");
  EXPECT_EQ(rig.sondrel.core.GetRxFrequency(0, kTuned), 7050000);
  rig.type(":6085\r");
  EXPECT_EQ(rig.digits(), "  6085000");
  rig.type("d1440\r");
  EXPECT_EQ(rig.digits(), "  1445000");
  rig.type("10+");
  EXPECT_EQ(rig.digits(), "  1455000");
}

TEST(MainWindow, HoldsArrivingFrequenciesBackWhileAnEntryIsInProgress) {
  PanelRig rig;
  rig.start();
  rig.type("70");
  rig.turnKnob(0, 5000000);
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.digits(), "    70000");
  rig.type("\b\b");
  EXPECT_EQ(rig.digits(), "  5000000") << "the entry ended, the receiver's frequency shows";
  rig.window.focus(id::FrqDigit + 3);
  rig.type("9");
  rig.turnKnob(0, 4000000);
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.digits(), "  5900000");
  rig.click(id::SM);
  EXPECT_EQ(rig.digits(), "  4000000") << "leaving the row gives overwritten digits up";
}

TEST(MainWindow, PutsTheRowRightWhenTheReceiverLimitsWhatTheHandSet) {
  PanelRig rig;
  rig.start();
  rig.panel->tabClicked(3);
  rig.type("9583.4\r");
  EXPECT_EQ(rig.digits(), "  9583000") << "this receiver tunes in whole kilohertz";
  rig.panel->tabClicked(2);
  rig.type("500\r");
  EXPECT_EQ(rig.digits(), "  1600000");
}

TEST(MainWindow, SelectingAReceiverShowsItsOwnLimitsAndNothingOfWhatWasTypedForAnother) {
  PanelRig rig;
  rig.start();
  rig.type("123");
  rig.panel->tabClicked(1);
  EXPECT_EQ(rig.digits(), " 14200000");
  EXPECT_TRUE(rig.view().FrqDigit[0].visible);
  EXPECT_FALSE(rig.view().FrqDigit[8].enabled) << "steps of 10 Hz";
  rig.type("\r");
  EXPECT_EQ(rig.digits(), " 14200000");
  EXPECT_EQ(rig.view().caption, "Kelvane 1.0.0 - Receiver Quill");
}

TEST(MainWindow, WaitsForATypedEntryFromTheStart) {
  PanelRig rig;
  rig.start();
  EXPECT_EQ(rig.view().FrqDotit.fore, kRed);
}

TEST(MainWindow, AcceleratorsGoRoundTheTabsThatBeginWithTheCharacter) {
  PanelRig rig(
      "[Receiver]\r\nName=Alpha\r\n[Receiver]\r\nName=Beta\r\n[Receiver]\r\nName=anna\r\n");
  MAin& panel = rig.start();
  ASSERT_EQ(rig.view().TabStrip.tabs.size(), 3u);
  panel.tabClicked(0);
  EXPECT_TRUE(panel.accelerator('a'));
  EXPECT_EQ(rig.view().TabStrip.selected, 2);
  EXPECT_TRUE(panel.accelerator('A'));
  EXPECT_EQ(rig.view().TabStrip.selected, 0);
  EXPECT_FALSE(panel.accelerator('z'));
}

TEST(MainWindow, ClosingEndsEveryLinkInOrderBeforeThePlaceIsWritten) {
  PanelRig rig;
  rig.start();
  rig.panel->unload({15, 30, 9000, 4500});
  for (Index rx = 0; rx < 4; ++rx) EXPECT_FALSE(rig.sondrel.core.IsRxOnline(rx)) << rx;
  EXPECT_EQ(rig.window.pumps, 4);
  EXPECT_EQ(rig.settings.number("MainLeft", 0), 15);
  EXPECT_EQ(rig.settings.number("MainHeight", 0), 4500);
  EXPECT_EQ(rig.panel->startPlace(), (Placement{15, 30, 0, 0}));
}

}  // namespace
}  // namespace kelvane
