#include <gtest/gtest.h>

#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/unlike_receivers.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
namespace unlike = fakes::unlike;

constexpr Colour kYellow = Colour::rgb(255, 255, 0);

/// The captions of the receiver's row, those that are visible.
std::string row(const MainView& view) {
  std::string text;
  for (const Control& button : view.ModEvent) {
    if (button.visible) text += button.text + "|";
  }
  return text;
}

std::string linesShown(const MainView& view) {
  std::string text;
  for (const Control& line : view.IO) text += line.visible ? 'o' : ' ';
  return text;
}

TEST(AnotherReceiver, ShowsNothingOfTheFormerOneWhereItTellsNothing) {
  PanelRig rig(unlike::receivers());
  rig.start();
  MainView& view = rig.view();
  rig.panel->tabClicked(unlike::kFull);
  rig.press(key::PadPlus, key::CtrlHeld);
  rig.click(id::ModEvent);
  rig.click(id::VStep);
  const std::string known = view.Band.text, full = row(view);
  ASSERT_EQ(full.find("--"), std::string::npos) << full;
  ASSERT_TRUE(view.SQ.visible);
  ASSERT_TRUE(view.BMod.visible);
  ASSERT_NE(view.VBank.text, "");

  rig.panel->tabClicked(unlike::kSecretive);
  EXPECT_EQ(row(view), "----|----|AGC:--|Att:--|NB:--|");
  EXPECT_EQ(view.HFF.text, "HF ?");
  EXPECT_EQ(view.HFF.fore, kQuietText);
  EXPECT_EQ(view.SM.text, "");
  EXPECT_FALSE(view.SQ.visible);
  EXPECT_EQ(view.IBank.text + view.VBank.text, "");

  rig.panel->tabClicked(unlike::kFull);
  EXPECT_EQ(row(view), full);
  EXPECT_TRUE(view.SQ.visible) << "an open squelch reports no change";

  rig.panel->tabClicked(unlike::kLost);
  EXPECT_EQ(row(view), "----|----|Att:--|NB:--|") << "it has no AGC";
  EXPECT_EQ(view.VStep[0].text, "500Hz");
  EXPECT_EQ(view.VStep[1].text, "");
  EXPECT_EQ(view.Band.text, "Bandplan");
  EXPECT_FALSE(view.BMod.visible || view.BFlt.visible || view.FDif.visible);
  EXPECT_EQ(rig.digits(), " xxxxxxxx");

  rig.panel->tabClicked(unlike::kFull);
  EXPECT_EQ(view.Band.text, known);
  EXPECT_EQ(linesShown(view), "oooo");
  rig.panel->tabClicked(unlike::kScanner);
  EXPECT_EQ(linesShown(view), "oo  ");
  rig.panel->tabClicked(unlike::kPlain);
  EXPECT_EQ(row(view), "USB|2700|");
}

TEST(AnotherReceiver, LearnsWhatWasNotKnownFromItsOwnAnswer) {
  PanelRig rig(unlike::receivers());
  rig.start();
  rig.panel->tabClicked(unlike::kSecretive);
  rig.click(id::HFF);
  EXPECT_EQ(rig.view().HFF.text, "HF on") << "asked to be on, and the radio took it";
  rig.click(id::ModEvent + 3);
  EXPECT_EQ(row(rig.view()), "----|----|AGC:--|Att:Off|NB:--|");
  rig.panel->tabClicked(unlike::kStubborn);
  const std::string before = row(rig.view());
  rig.click(id::HFF);
  for (int button = 0; button < 5; ++button) rig.click(id::ModEvent + button);
  EXPECT_EQ(row(rig.view()), before) << "it refuses all";
  EXPECT_EQ(rig.view().HFF.text, "HF on");
}

/// A receiver that has one filter only in one of its modes.
class OneFilterInDrm final : public fakes::PassingReceivers {
 public:
  using PassingReceivers::PassingReceivers;
  Answer<Count> GetRxFilterCount(Index rx) override {
    return GetRxModeName(rx, GetRxMode(rx)).value() == "DRM"
               ? Answer<Count>(1)
               : PassingReceivers::GetRxFilterCount(rx);
  }
};

TEST(ModeButtons, OfferTheFilterByTheModeThatTheReceiverIsIn) {
  PanelRig rig("[Receiver]\nName=A\nModes=AM DRM\nMode=AM\n");
  rig.wrapped = std::make_unique<OneFilterInDrm>(rig.sondrel.core);
  rig.start();
  const Control& filter = rig.view().ModEvent[1];
  EXPECT_TRUE(filter.enabled);
  rig.click(id::ModEvent);
  EXPECT_FALSE(filter.enabled);
  rig.click(id::ModEvent);
  EXPECT_TRUE(filter.enabled);
  rig.click(id::LockImg);
  rig.sondrel.core.turnKnob(0, sondrel::Item::Mode, 8);
  rig.sondrel.core.turnKnob(0, sondrel::Item::Mode, 0);
  rig.run(milliseconds(50));
  EXPECT_FALSE(filter.enabled) << "locked";
}

TEST(Indicators, ShowTheMeterInTwoScalesAndOnlyWhatIsLive) {
  PanelRig rig;
  rig.start();
  EXPECT_EQ(rig.view().SM.text.front(), 'S');
  rig.click(id::SM);
  EXPECT_EQ(rig.view().SM.text.front(), '-') << rig.view().SM.text;
  rig.run(milliseconds(500));
  EXPECT_EQ(rig.view().SM.text.front(), '-') << rig.view().SM.text;
  rig.sondrel.core.SetRxConnect(0, false);
  rig.sondrel.core.setFaults(0, {});
  rig.panel->tabClicked(1);
  rig.panel->tabClicked(0);
  EXPECT_EQ(rig.view().SM.text, "");
  EXPECT_FALSE(rig.view().SQ.visible);
}

TEST(Indicators, LinesFollowTheReceiverAndAreSwitchedByClicks) {
  PanelRig rig;
  rig.start();
  auto& lines = rig.view().IO;
  EXPECT_EQ(lines[3].back, Colour::rgb(255, 0, 0));
  EXPECT_EQ(lines[3].text, "off") << "colour is not the only sign";
  rig.click(id::IO + 3);
  EXPECT_EQ(lines[3].back, Colour::rgb(0, 255, 0));
  EXPECT_EQ(lines[3].text, kLampLit);
  rig.click(id::LockImg);
  EXPECT_EQ(lines[3].back, Colour::rgb(64, 64, 64));
  EXPECT_EQ(lines[3].text, "") << "unknown";
  rig.panel->tabClicked(2);
  EXPECT_FALSE(lines[0].visible);
}

TEST(Steps, AreKeptForEachReceiverWithinItsLargest) {
  PanelRig rig;
  rig.start();
  auto& steps = rig.view().VStep;
  rig.click(id::VStep);
  EXPECT_EQ(steps[0].text, " 600Hz");
  rig.type("7050\r");
  EXPECT_EQ(steps[0].text, "600Hz");
  for (int i = 0; i < 12; ++i) rig.click(id::VStep, MouseButton::Right);
  EXPECT_EQ(steps[0].text, " 100Hz");
  const std::string band = steps[1].text;
  rig.click(id::VStep + 1);
  EXPECT_EQ(steps[1].text, band);
  rig.panel->tabClicked(2);
  for (int i = 0; i < 9; ++i) rig.click(id::VStep);
  rig.type("2500\r");
  EXPECT_EQ(steps[0].text, "500Hz") << "this receiver's largest step";
  rig.panel->tabClicked(0);
  EXPECT_EQ(steps[0].text, "100Hz");
}

TEST(Stations, AreNamedWithTheirOffsetAndTunedOntoByAClick) {
  PanelRig rig;
  rig.start();
  rig.type("5000\r");
  EXPECT_EQ(rig.view().Band.fore, Colour::rgb(128, 255, 255));
  EXPECT_FALSE(rig.view().FDif.visible);
  const std::string name = rig.view().Band.text;
  rig.type("5000.03\r");
  EXPECT_EQ(rig.view().Band.text, name);
  EXPECT_EQ(rig.view().Band.fore, kYellow);
  EXPECT_EQ(rig.view().FDif.text, "-30");
  rig.type("4999.8\r");
  EXPECT_EQ(rig.view().Band.fore, Colour::rgb(255, 192, 128));
  rig.click(id::FDif);
  EXPECT_EQ(rig.digits(), "  5000000");
  rig.type("5000.251\r");
  EXPECT_NE(rig.view().Band.text, name);
}

TEST(Stations, AreTunedOntoAlsoAfterAWalkThatFoundNothing) {
  PanelRig rig("[Receiver]\r\nKind=simulated\r\nMinimum=4000000\r\nMaximum=5000060\r\n");
  rig.start();
  rig.type("5000.05\r");
  ASSERT_EQ(rig.view().FDif.text, "-50");
  rig.press(key::PadPlus, key::CtrlHeld);
  ASSERT_EQ(rig.window.beeps, 1);
  rig.click(id::FDif);
  EXPECT_EQ(rig.digits(), "  5000000");
}

TEST(BestSetting, IsOfferedAndTakenByAClickButAutomaticallyOnlyUnderALockedPanel) {
  PanelRig rig;
  rig.start();
  rig.type("9996\r");
  EXPECT_TRUE(rig.view().BMod.visible);
  EXPECT_EQ(rig.view().BMod.text, "CW");
  EXPECT_EQ(rig.view().ModEvent[0].text, "AM") << "offered, not applied";
  rig.click(id::BMod);
  EXPECT_EQ(rig.view().ModEvent[0].text, "CW");
  EXPECT_FALSE(rig.view().BMod.visible);
  rig.turnKnob(0, 5000000);
  EXPECT_EQ(rig.view().ModEvent[0].text, "CW") << "the panel is in command";
  rig.click(id::LockImg);
  rig.turnKnob(0, 5000100);
  rig.turnKnob(0, 5000000);
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.view().ModEvent[0].text, "AM");
}

TEST(Navigation, RightClicksGoTheOtherWayAndChannelsGoRound) {
  PanelRig rig;
  rig.start();
  rig.type("7050\r");
  rig.click(id::Band);
  EXPECT_GT(rig.digits(), "  7050000");
  rig.click(id::Band, MouseButton::Right);
  EXPECT_LE(rig.digits(), "  7050000");
  rig.click(id::VChn);
  EXPECT_EQ(rig.view().VChn.text, "00");
  rig.click(id::VChn, MouseButton::Right);
  EXPECT_EQ(rig.view().VChn.text, "99");
}

TEST(Labels, SwitchTheHfFilterTheBfoAndTheChannelizedFrequency) {
  PanelRig rig;
  rig.start();
  EXPECT_EQ(rig.view().HFF.fore, Colour::rgb(0, 255, 0));
  rig.click(id::HFF);
  EXPECT_EQ(rig.view().HFF.fore, Colour::rgb(255, 0, 0));
  EXPECT_EQ(rig.sondrel.core.GetRxHFFilter(0), 0);
  rig.click(id::FrqBfo);
  EXPECT_EQ(rig.view().FrqBfo.text, "100");
  rig.click(id::FrqBfo, MouseButton::Right);
  EXPECT_EQ(rig.view().FrqBfo.text, "");
  EXPECT_EQ(rig.view().FAlt.tip, "Filter tied channelized frequency");
  EXPECT_EQ(rig.view().FAlt.fore, Colour::rgb(255, 192, 128));
  rig.click(id::FAlt);
  EXPECT_EQ(rig.view().FAlt.tip, "Fixed channelized frequency");
  rig.panel->tabClicked(1);
  EXPECT_FALSE(rig.view().HFF.visible);
}

TEST(UtcClock, FollowsTheComputersClockAndItsZone) {
  PanelRig rig;
  rig.calendar.time = {2026, 3, 15, 1, 59, 59};
  rig.start();
  EXPECT_EQ(rig.view().UtcTime.text, "23:59 UTC");
  EXPECT_EQ(rig.view().UtcTime.tip, "2026-03-14, Universal Time");
  rig.calendar.time = {2026, 3, 15, 2, 0, 0};
  rig.run(milliseconds(1100));
  EXPECT_EQ(rig.view().UtcTime.text, "00:00 UTC");
}

}  // namespace
}  // namespace kelvane
