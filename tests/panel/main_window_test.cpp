#include "panel/main_window.h"

#include <gtest/gtest.h>

#include "contract/link_state.h"
#include "contract/modes.h"
#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

TEST(MainWindow, StaysOnTheFirstReceiverThoughItsLinkIsTheLastToComeUpAtTheStart) {
  PanelRig rig;
  rig.start(milliseconds(0));
  for (int i = 0; i < 40; ++i) {
    rig.run(milliseconds(100));
    ASSERT_EQ(rig.view().TabStrip.selected, 0) << i;
  }
  EXPECT_EQ(rig.view().TabStrip.tabs.size(), 4u);
  EXPECT_EQ(rig.view().TabStrip.selected, 0);
  EXPECT_EQ(rig.view().TabStrip.tabs[0].caption, "&Harrow");
  EXPECT_EQ(rig.view().caption, "Kelvane 1.0.0 - Receiver Harrow [Type: HF 30]");
  EXPECT_EQ(rig.digits(), "  6070000");
  EXPECT_FALSE(rig.view().RxMask.visible);
  EXPECT_EQ(rig.view().RNG.text, "1R");
  for (const Tab& tab : rig.view().TabStrip.tabs) EXPECT_TRUE(tab.highlighted);
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

/// Receivers whose upper limit a test changes.
struct LimitedReceivers : fakes::PassingReceivers {
  using PassingReceivers::PassingReceivers;
  Answer<Hz> GetRxFrqMax(Index) override { return most; }
  Hz most = 29'999'999;
};

TEST(MainWindow, OtherLimitsOfTheShownReceiverLeaveWhatIsTyped) {
  PanelRig rig;
  auto limited = std::make_unique<LimitedReceivers>(rig.sondrel.core);
  Hz& most = limited->most;
  rig.wrapped = std::move(limited);
  rig.start();
  const auto told = [&] { rig.panel->receiverEvents().RxConnState(0, Long(LinkState::Up)); };
  rig.type("14250");
  most = 54'000'000;
  told();
  EXPECT_EQ(rig.digits(), " 14250000");
  rig.type("\r");
  EXPECT_EQ(rig.sondrel.core.GetRxFrequency(0, kTuned), 14'250'000);
  rig.type("14300");
  most = 9'000'000;
  told();
  EXPECT_FALSE(rig.view().FrqDigit[1].enabled) << "a digit that is not there any more";
  rig.type("\r");
  EXPECT_EQ(rig.sondrel.core.GetRxFrequency(0, kTuned), 9'000'000) << "as any number out of range";
}

TEST(MainWindow, ColoursTellTheSideOfTheChannelBoundaryAndWhereTheBfoWorks) {
  PanelRig rig;
  rig.start();
  const Hz boundary = rig.sondrel.core.GetRxFrequency(0, kChannelBoundary);
  ASSERT_GT(boundary, 1000);
  const auto colourAt = [&](Hz frequency) {
    rig.panel->receiverEvents().RxFrqUpdated(0, frequency, 0);
    return rig.view().FrqDigit[4].fore;
  };
  EXPECT_NE(colourAt(boundary - 1000), colourAt(boundary));
  for (const Mode mode : {Mode::Am, Mode::Cw}) {
    rig.sondrel.core.SetRxMode(0, static_cast<Setting>(mode));
    rig.run(milliseconds(500));
    EXPECT_EQ(rig.view().FrqBfo.fore, mode == Mode::Cw ? kGreen : kRed);
  }
}

TEST(MainWindow, ClosingEndsEveryLinkInOrderBeforeThePlaceIsWritten) {
  PanelRig rig;
  rig.start();
  std::string online;
  rig.window.pending = [&] {
    for (Index rx = 0; rx < 4; ++rx) online += rig.sondrel.core.IsRxOnline(rx) ? '+' : '-';
    EXPECT_EQ(rig.settings.number("MainLeft", -1), -1) << online;
  };
  rig.panel->unload({15, 30, 9000, 4500});
  EXPECT_EQ(online, "-+++--++---+----");
  EXPECT_EQ(rig.settings.number("MainLeft", 0), 15);
  EXPECT_EQ(rig.settings.number("MainHeight", 0), 4500);
  EXPECT_EQ(rig.panel->startPlace(), (Placement{15, 30, 0, 0}));
}

}  // namespace
}  // namespace kelvane
