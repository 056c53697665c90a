#include <gtest/gtest.h>

#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SondrelRig;
using Lines = std::vector<std::string>;

TEST(Link, TheFirstReceiverOfANewInstanceComesUpLastAndAllAreUnderRemoteControl) {
  SondrelRig rig;
  ASSERT_EQ(rig.open(), 4);
  EXPECT_EQ(rig.listener.lines("RxConnState"),
            (Lines{"RxConnState 1 1000", "RxConnState 2 1000", "RxConnState 3 1000"}));
  EXPECT_FALSE(rig.core.IsRxOnline(0));
  EXPECT_EQ(rig.core.GetRxLinkState(0), 999);
  rig.run(milliseconds(1500));
  EXPECT_EQ(rig.listener.lines("RxConnState").back(), "RxConnState 0 1000");
  EXPECT_EQ(rig.listener.count("RxConnState"), 4u) << "once for each coming up";
  EXPECT_EQ(rig.listener.count("RxRmtState"), 4u);
  for (Index rx = 0; rx < 4; ++rx) {
    EXPECT_TRUE(rig.core.IsRxOnline(rx));
    EXPECT_TRUE(rig.core.GetRxRemote(rx));
    EXPECT_EQ(rig.core.GetRxLinkState(rx), 1000);
  }
}

TEST(Link, ComesUpWithRemoteControlAlreadyTaken) {
  SondrelRig rig;
  bool remoteWhenUp = false;
  rig.listener.meanwhile = [&](const auto& heard) {
    if (heard.line == "RxConnState 1 1000") remoteWhenUp = rig.core.GetRxRemote(1);
  };
  rig.open();
  EXPECT_TRUE(remoteWhenUp);
}

TEST(Link, ComeUpAfterALateTickInTheOrderOfTheirOwnTimes) {
  SondrelRig rig;
  rig.core.OpenRxConfig("Kelvane", 0);
  rig.clock.advance(milliseconds(5000));
  rig.pump();
  const auto links = rig.listener.lines("RxConnState");
  ASSERT_EQ(links.size(), 4u);
  EXPECT_EQ(links.back(), "RxConnState 0 1000") << "the first receiver's link is the slow one";
}

TEST(Link, EveryStateCodeIsReportedOnceForEachAttempt) {
  for (const int code : {999, 1001, 1002, 1003, 1004, 1005, 1006, 1010, 1022, 1024, 1025}) {
    SondrelRig rig;
    rig.configure("[Receiver 1]\nName=A\nLinkTime=300\nFault=" + std::to_string(code) + "\n");
    rig.open();
    EXPECT_TRUE(rig.listener.heard.empty());
    const std::string line = "RxConnState 0 " + std::to_string(code);
    rig.run(milliseconds(400));
    EXPECT_EQ(rig.listener.lines(), Lines{line});
    EXPECT_FALSE(rig.core.IsRxOnline(0));
    EXPECT_FALSE(rig.core.GetRxRemote(0));
    EXPECT_EQ(rig.core.GetRxLinkState(0), code);
    rig.core.SetRxConnect(0, true);
    rig.run(milliseconds(400));
    EXPECT_EQ(rig.listener.lines(), (Lines{line, line}));
  }
}

TEST(Link, HealsAfterTheConfiguredNumberOfAttempts) {
  SondrelRig rig;
  rig.configure("[Receiver 1]\nName=A\nFault=1003\nFaultHeals=2\n");
  rig.open();
  for (int attempt = 0; attempt < 2; ++attempt) {
    rig.core.SetRxConnect(0, true);
    rig.run(milliseconds(10));
  }
  EXPECT_EQ(rig.listener.lines("RxConnState"),
            (Lines{"RxConnState 0 1003", "RxConnState 0 1003", "RxConnState 0 1000"}));
}

TEST(Link, ASilentReceiverIsAskedAgainWithoutTheListenersHelp) {
  SondrelRig rig;
  rig.configure("[Receiver 1]\nName=A\nFault=999\nFaultHeals=3\n");
  rig.open();
  rig.run(milliseconds(5000));
  EXPECT_EQ(rig.listener.lines("RxConnState"), (Lines{"RxConnState 0 999", "RxConnState 0 1000"}))
      << "the further silence is no news";
}

TEST(Link, ReopeningClosingAndCallingTwiceEndInOneStateEach) {
  SondrelRig rig;
  rig.open();
  rig.run(milliseconds(1200));
  rig.listener.clear();
  rig.core.SetRxConnect(0, true);
  EXPECT_FALSE(rig.core.IsRxOnline(0)) << "reopened, not just confirmed";
  rig.run(milliseconds(500));
  rig.core.SetRxConnect(0, true);
  rig.run(milliseconds(700));
  EXPECT_EQ(rig.listener.count("RxConnState"), 0u) << "the second call began anew";
  rig.run(milliseconds(500));
  EXPECT_EQ(rig.listener.lines("RxConnState"), Lines{"RxConnState 0 1000"});
  rig.listener.clear();
  rig.core.SetRxConnect(0, false);
  rig.run(milliseconds(3000));
  EXPECT_EQ(rig.listener.lines("RxConnState"), Lines{"RxConnState 0 999"});
  EXPECT_FALSE(rig.core.IsRxOnline(0));
}

TEST(Link, AFaultInjectedWhileItRunsEndsTheLinkAndHealingBringsItBack) {
  SondrelRig rig;
  rig.open();
  rig.listener.clear();
  SimulatedFaults faults;
  faults.code = 1010;
  ASSERT_TRUE(rig.core.setFaults(1, faults));
  rig.core.deliverEvents();
  EXPECT_EQ(rig.listener.lines(), Lines{"RxConnState 1 1010"});
  EXPECT_FALSE(rig.core.GetRxRemote(1));
  EXPECT_EQ(rig.core.GetRxSMtText(1, 2).value(), "") << "what is not live is not told";
  rig.core.SetRxConnect(1, true);
  rig.pump();
  EXPECT_EQ(rig.core.GetRxLinkState(1), 1010);
  faults.code = 0;
  rig.core.setFaults(1, faults);
  rig.pump();
  EXPECT_EQ(rig.core.GetRxLinkState(1), 1000);
  EXPECT_FALSE(rig.core.setFaults(8, faults));
}

TEST(Remote, TakingAndGivingBackEndInRxRmtState) {
  SondrelRig rig;
  rig.open();
  rig.listener.clear();
  EXPECT_EQ(rig.core.SetRxRemote(0, true), Outcome::Failed) << "it does not answer yet";
  EXPECT_EQ(rig.core.SetRxRemote(1, false), Outcome::Done);
  EXPECT_EQ(rig.core.SetRxRemote(1, true), Outcome::Done);
  SimulatedFaults faults;
  faults.refusesRemote = true;
  rig.core.setFaults(1, faults);
  rig.core.SetRxRemote(1, false);
  rig.pump();
  EXPECT_EQ(rig.listener.lines(), (Lines{"RxRmtState 1 0", "RxRmtState 1 1", "RxRmtState 1 1"}));
}

TEST(Link, IndexesThatThereAreNotFailWithTheStatedFallback) {
  SondrelRig rig;
  rig.open();
  for (const Index rx : {Index{-1}, Index{4}, Index{8}, Index{32767}, Index{-32768}}) {
    EXPECT_FALSE(rig.core.GetRxFrequency(rx, 0).ok());
    EXPECT_EQ(rig.core.GetRxFrequency(rx, 0), -1);
    EXPECT_EQ(rig.core.GetRxMaxStep(rx), 1);
    EXPECT_EQ(rig.core.GetRxLinkState(rx), 999);
    EXPECT_EQ(rig.core.GetRxMode(rx), -1);
    EXPECT_EQ(rig.core.GetRxChannel(rx), -1);
    EXPECT_EQ(rig.core.SetRxConnect(rx, true), Outcome::Failed);
    EXPECT_EQ(rig.core.SetRxFrequency(rx, false, 7'000'000), Outcome::Failed);
    EXPECT_EQ(rig.core.SetRxShown(rx), Outcome::Failed);
    EXPECT_FALSE(rig.core.RxKeyPress(rx, "M").ok());
    EXPECT_FALSE(rig.core.ReadRxChannels(rx).ok());
  }
}

TEST(Core, WakesOnlyFromOutsideTheLoopAndWhenSomethingIsDueEarlier) {
  SondrelRig rig;
  rig.core.OpenRxConfig("Kelvane", 0);
  EXPECT_EQ(rig.wakes, 1) << "links are due";
  rig.pump();
  rig.core.SetRxConnect(0, false);
  rig.core.SetRxConnect(1, false);
  rig.core.SetRxConnect(2, false);
  rig.core.SetRxConnect(3, false);
  rig.pump();
  ASSERT_EQ(rig.core.nextDue(), kNever);
  const int wakes = rig.wakes;
  rig.core.SetRxConnect(0, true);
  EXPECT_EQ(rig.wakes, wakes + 1) << "an attempt ends in a second";
  EXPECT_EQ(rig.core.nextDue(), rig.clock.now + milliseconds(1000));
}

}  // namespace
}  // namespace kelvane::sondrel
