#include <gtest/gtest.h>

#include "receiver/link_retry.h"
#include "receiver/status_box.h"
#include "tests/fakes/panel_rig.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

std::string receivers(const std::string& first, int more = 0) {
  std::string text = "[Receiver]\r\nName=First\r\n" + first;
  for (int i = 0; i < more; ++i) text += "[Receiver]\r\nName=More" + std::to_string(i) + "\r\n";
  return text;
}

TEST(StatusBox, HasWordsAndAColourForEveryCode) {
  const Colour orange = Colour::rgb(255, 192, 128);
  const Colour red = Colour::rgb(255, 0, 0);
  const struct {
    Long code;
    const char* words;
    Colour colour;
  } rows[] = {{1002, "Link: No loop", orange},
              {1003, "Link: Timeout", orange},
              {1004, "Link: Bad address", red},
              {1005, "Link: Configuration", red},
              {1006, "Link: Cannot open", orange},
              {1010, "Link: Error", orange},
              {1022, "Rx: Bad ID", red},
              {1024, "Rx: Bad Address", red},
              {1025, "Rx: BITE Error", red},
              {999, "Rx: Not responding", orange},
              {1001, "Rx: Not responding", orange},
              {-5, "Rx: Not responding", orange},
              {1026, "Rx: Not responding", orange}};
  for (const auto& row : rows) {
    EXPECT_EQ(linkWords(row.code).text, row.words) << row.code;
    EXPECT_EQ(linkWords(row.code).colour, row.colour) << row.code;
  }
}

TEST(Links, SayNotConnectedOnlyOfAReceiverThatNeverReported) {
  PanelRig rig(receivers("LinkTime=60000\r\n"));
  rig.start(milliseconds(100));
  EXPECT_EQ(rig.view().RxMask.text, "Not connected");
  for (const Long code : {0, 77}) {
    rig.panel->receiverEvents().RxConnState(0, code);
    EXPECT_EQ(rig.view().RxMask.text, "Rx: Not responding") << code;
  }
}

TEST(Links, SayInTheComponentsWordsWhyAndTheyStayWhileTheBoxBlinks) {
  PanelRig rig("[Receiver]\r\nName=Radio\r\nKind=radio\r\n");
  rig.start(milliseconds(100));
  bool hidden = false;
  for (int i = 0; i < 5000 && !hidden; ++i) {
    rig.run(milliseconds(100));
    hidden = !rig.view().RxMask.visible && !rig.view().RxWhy.text.empty();
    std::this_thread::sleep_for(milliseconds(1));
  }
  EXPECT_EQ(rig.view().RxWhy.text, "No model is chosen for this radio.");
  EXPECT_TRUE(rig.view().RxWhy.visible);
}

TEST(LinkRetry, TurnsFasterWithMoreReceiversAndKeepsOneIdleSlotARound) {
  PanelRig rig(receivers("Fault=1003\r\n", 1));
  LinkRetry retry(rig.sondrel.core);
  Instant now = rig.sondrel.clock.now;
  retry.start(2, now);
  EXPECT_EQ(retry.timer().interval(), milliseconds(250));
  retry.reported(0, 1003, now);
  EXPECT_EQ(retry.timer().interval(), milliseconds(500));
  retry.reported(1, 1010, now);
  EXPECT_EQ(retry.timer().interval(), milliseconds(250));
  std::string asked;
  for (int i = 0; i < 7; ++i) {
    now += milliseconds(250);
    asked += retry.tick(now) ? '!' : '.';
    retry.reported(0, 1003, now);
    retry.reported(1, 1003, now);
  }
  EXPECT_EQ(asked, "!!.!!.!");
  retry.reported(0, 1000, now);
  retry.reported(1, 999, now);
  EXPECT_FALSE(retry.failed(0) || retry.failed(1));
}

TEST(Links, AReceiverThatComesUpIsShownButNotInTheMiddleOfAnEntry) {
  PanelRig rig(receivers("", 1) + "Fault=1006\r\nFaultHeals=4\r\n");
  rig.start(milliseconds(200));
  ASSERT_EQ(rig.view().TabStrip.selected, 0);
  rig.type("70");
  rig.run(milliseconds(6000));
  ASSERT_TRUE(rig.sondrel.core.IsRxOnline(1));
  EXPECT_EQ(rig.view().TabStrip.selected, 0);
  rig.window.modal = true;
  rig.type("50\r");
  EXPECT_EQ(rig.view().TabStrip.selected, 0) << "a dialog is open";
  rig.window.modal = false;
  rig.run(milliseconds(4000));
  EXPECT_EQ(rig.view().TabStrip.selected, 1);
  EXPECT_EQ(rig.sondrel.core.GetRxFrequency(0, kTuned), 7050000);
}

TEST(Links, AHandAtAnotherReceiverPullsTheDisplayThereWhereTheOptionWantsIt) {
  for (const bool monitor : {true, false}) {
    PanelRig rig(receivers("", 1));
    rig.settings.writeFlag("MonitorChanges", monitor);
    rig.start();
    rig.panel->tabClicked(0);
    rig.run(milliseconds(3000));
    rig.sondrel.core.SetRxFrequency(1, false, 5000000);
    rig.run(milliseconds(100));
    EXPECT_EQ(rig.view().TabStrip.selected, 0) << "not a hand's change";
    rig.turnKnob(1, 6000000);
    EXPECT_EQ(rig.view().TabStrip.selected, monitor ? 1 : 0);
  }
}

TEST(Links, ThatFailedAreAskedForOnAfterTheDriversWereEdited) {
  PanelRig rig(receivers("", 1) + "Fault=1006\r\nFaultHeals=12\r\n");
  rig.start();
  ASSERT_FALSE(rig.sondrel.core.IsRxOnline(1));
  auto drivers = rig.sondrel.core.drivers();
  drivers.move(1, 0);
  ASSERT_TRUE(rig.sondrel.core.applyDrivers(drivers));
  rig.run(milliseconds(100));
  EXPECT_EQ(rig.sondrel.core.GetRxLinkState(0), 1006);
  EXPECT_TRUE(rig.sondrel.core.IsRxOnline(1)) << "a link that is up stays";
  rig.run(milliseconds(15000));
  EXPECT_TRUE(rig.sondrel.core.IsRxOnline(0)) << "by the panel's retries";
}

}  // namespace
}  // namespace kelvane
