#include "panel/display_requests.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_receiver.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;
using std::chrono::seconds;

constexpr bool kFree = false, kBusy = true;

class DisplayRequestsTest : public testing::Test {
 protected:
  void up(Index rx, int at) { requests.linkUp(rx, true, start + seconds(at)); }
  void down(Index rx, int at) { requests.linkDown(rx, start + seconds(at)); }
  std::optional<Index> shows(int at, bool busy = kFree) {
    return requests.due(busy, start + seconds(at));
  }

  const Instant start = Instant{} + seconds(1000);
  DisplayRequests requests;
};

TEST_F(DisplayRequestsTest, AHandAtWorkIsNotDisturbedAndTheNewestThatWaitedIsShown) {
  up(1, 0);
  EXPECT_EQ(shows(0), 1);
  requests.handMoved(start + seconds(10));
  up(2, 11);
  up(3, 12);
  EXPECT_EQ(shows(12), std::nullopt);
  EXPECT_EQ(requests.nextDue(), start + seconds(13));
  requests.handMoved(start + seconds(12));
  EXPECT_EQ(shows(14), std::nullopt);
  EXPECT_EQ(shows(15, kBusy), std::nullopt);
  EXPECT_GT(requests.nextDue(), start + seconds(15)) << "it does not look without a pause";
  EXPECT_EQ(shows(16), 3);
  EXPECT_EQ(shows(20), std::nullopt);
  requests.handMoved(start + seconds(30));
  requests.tunedByHand(2, start + seconds(31));
  requests.chosen();
  EXPECT_EQ(shows(40), std::nullopt) << "the operator chose meanwhile";
}

TEST_F(DisplayRequestsTest, ALinkThatWasUpWithinTheLastMinuteIsNoNews) {
  up(1, 0);
  ASSERT_EQ(shows(0), 1);
  up(1, 70);
  EXPECT_EQ(shows(70), std::nullopt) << "it never went";
  down(1, 100);
  down(1, 150);
  up(1, 159);
  EXPECT_EQ(shows(159), std::nullopt);
  down(1, 200);
  up(1, 260);
  EXPECT_EQ(shows(260), 1);
}

TEST_F(DisplayRequestsTest, OfLinksThatComeUpTogetherTheFirstIsShown) {
  for (Index rx = 0; rx < 4; ++rx) {
    up(rx, 2 * rx);
    EXPECT_EQ(shows(2 * rx), rx == 0 ? std::optional<Index>(0) : std::nullopt) << rx;
  }
  up(4, 9);
  EXPECT_EQ(shows(9), 4) << "three seconds later is not together";
  up(5, 30);
  requests.shownLinkUp(6, start + seconds(31));
  up(7, 33);
  EXPECT_EQ(shows(40), std::nullopt) << "the shown receiver is among them";
  requests.tunedByHand(1, start + seconds(60));
  EXPECT_EQ(shows(60), 1);
  requests.tunedByHand(2, start + seconds(60));
  EXPECT_EQ(shows(60), std::nullopt) << "two knobs turned at once do not make the display flicker";
  EXPECT_EQ(shows(61), 2);
}

TEST(Display, StaysWhereTheOperatorIsAtWorkThoughEightLinksComeUpAndOneFlaps) {
  std::string receivers;
  for (int i = 0; i < 8; ++i)
    receivers += "[Receiver]\r\nName=R" + std::to_string(i) +
                 "\r\nFault=1006\r\nFaultHeals=" + std::to_string(1 + i % 3) + "\r\n";
  PanelRig rig(receivers);
  auto recording = std::make_unique<fakes::RecordingReceiver>(rig.sondrel.core);
  fakes::RecordingReceiver& told = *recording;
  rig.wrapped = std::move(recording);
  rig.start(milliseconds(0));
  sondrel::SimulatedFaults flap;
  flap.code = 1006;
  flap.healsAfter = 2;
  rig.panel->tabClicked(3);
  for (int second = 0; second < 60; ++second) {
    rig.press(second % 2 ? key::Left : key::Right);
    rig.run(milliseconds(980));
    if (second % 5 == 4) rig.sondrel.core.setFaults(5, flap);
    EXPECT_EQ(rig.view().TabStrip.selected, 3) << second;
  }
  std::set<std::string> clocks;
  for (const std::string& line : told.told("SetRxTime")) clocks.insert(line.substr(0, 11));
  EXPECT_EQ(clocks.size(), 8u) << "the clock is set at every link that comes up, shown or not";
}

TEST(Display, FollowsALinkThatComesUpOnlyWhereTheOptionWantsIt) {
  for (const bool wanted : {true, false}) {
    PanelRig rig("[Receiver]\r\n[Receiver]\r\nFault=1006\r\nFaultHeals=12\r\n");
    rig.settings.writeFlag("ShowNewReceivers", wanted);
    rig.start();
    ASSERT_FALSE(rig.sondrel.core.IsRxOnline(1));
    rig.run(milliseconds(20000));
    ASSERT_TRUE(rig.sondrel.core.IsRxOnline(1));
    EXPECT_EQ(rig.view().TabStrip.selected, wanted ? 1 : 0);
  }
}

}  // namespace
}  // namespace kelvane
