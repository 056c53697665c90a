#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "tests/fakes/mode_settings.h"
#include "tests/fakes/real_rigctld.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::RealRigctld;
using Lines = std::vector<std::string>;

/// The component with receivers behind a real rigctld and its dummy radio.
class RigctldLive : public testing::Test {
 protected:
  void SetUp() override {
    if (RealRigctld::installed()) return;
    // Where the tests must be whole a missing server is a failure, not an excuse.
    ASSERT_EQ(std::getenv("CI"), nullptr) << "rigctld is not installed";
    GTEST_SKIP() << "rigctld is not installed";
  }

  static std::string section(const std::string& number, const RealRigctld& server) {
    return "[Receiver " + number +
           "]\r\nKind=rigctld\r\nHost=127.0.0.1\r\nPort=" + std::to_string(server.port()) + "\r\n";
  }
  void open(const RealRigctld& server) {
    rig.configure(section("1", server));
    rig.open();
    ASSERT_TRUE(waitFor([&] { return rig.core.IsRxOnline(0).value(); }));
  }
  /// Delivers events until something has come about; false after half a minute.
  bool waitFor(const std::function<bool()>& come) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!come()) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(milliseconds(1));
      rig.pump();
    }
    return true;
  }
  bool waitForLink(LinkState state) {
    return waitFor([&] { return rig.core.GetRxLinkState(0) == static_cast<Long>(state); });
  }
  bool waitForLine(const std::string& line) {
    return waitFor([&] {
      const auto lines = rig.listener.lines();
      return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
  }
  Lines tuned() const { return rig.listener.lines("RxFrqUpdated"); }

  fakes::SondrelRig rig;
};

TEST_F(RigctldLive, ComesUpKnowingItsRadioAndChangesNothing) {
  for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"-o"}}) {
    RealRigctld server(options);
    ASSERT_NO_FATAL_FAILURE(open(server));
    EXPECT_EQ(rig.core.GetRxFrequency(0, kTuned), 145'000'000);
    EXPECT_EQ(rig.core.GetRxMode(0), kFm);
    EXPECT_EQ(rig.core.GetRxFilter(0), 15000);
    EXPECT_EQ(rig.core.GetRxType(0).value(), "Hamlib Dummy");
    EXPECT_EQ(rig.core.GetRxFrqMin(0), 150'000);
    EXPECT_TRUE(rig.core.HasRxAgc(0, -1));
    EXPECT_TRUE(rig.core.HasRxAtt(0, -1));
    EXPECT_TRUE(rig.core.HasRxNBl(0, -1));
    EXPECT_TRUE(rig.core.HasRxHFFilter(0));
    EXPECT_TRUE(rig.core.GetRxRemote(0));
    EXPECT_TRUE(waitFor([&] { return !rig.core.GetRxSMtText(0, 1).value().empty(); }));
    EXPECT_TRUE(tuned().empty()) << "no event tells what has always been so";
    EXPECT_EQ(rig.listener.count("RxConnState"), 1U);
    rig.listener.clear();
  }
}

TEST_F(RigctldLive, SetsWhatTheRadioHas) {
  RealRigctld server;
  ASSERT_NO_FATAL_FAILURE(open(server));
  rig.listener.clear();
  for (int i = 1; i <= 10; ++i) {
    const Hz now = rig.core.GetRxFrequency(0, kTuned);
    rig.core.SetRxFrequency(0, false, i == 1 ? 7'050'000 : now + 1000);
  }
  EXPECT_EQ(rig.core.GetRxFrequency(0, kTuned), 7'059'000) << "ten quick steps are ten steps";
  ASSERT_TRUE(waitForLine("RxFrqUpdated 0 7059000 0"));
  EXPECT_EQ(tuned().back(), "RxFrqUpdated 0 7059000 0");
  EXPECT_EQ(server.ask("f"), "7059000");

  rig.core.SetRxMode(0, kUsb);
  ASSERT_TRUE(waitForLine("RxModUpdated 0 2 2400"));
  EXPECT_EQ(server.ask("m"), "USB");
  rig.core.SetRxFilter(0, 1900);
  ASSERT_TRUE(waitForLine("RxFltUpdated 0 1800"));
  rig.core.NextRxAtt(0);
  ASSERT_TRUE(waitForLine("RxAttUpdated 0 1 10"));
  EXPECT_EQ(server.ask("l ATT"), "10");
  rig.core.SetRxAgc(0, rig.core.GetRxAgcValue(0, "Slow"));
  ASSERT_TRUE(waitForLine("RxAgcUpdated 0 0 2000"));
  EXPECT_EQ(server.ask("l AGC"), "3") << "the protocol's code, not the place in its list";
  rig.core.NextRxNBl(0);
  ASSERT_TRUE(waitForLine("RxNBlUpdated 0 1 0"));
  EXPECT_EQ(server.ask("u NB"), "1");
  rig.core.SetRxHFFilter(0, 1);
  ASSERT_TRUE(waitForLine("RxHFFUpdated 0 1"));
  EXPECT_EQ(server.ask("l PREAMP"), "10");
  rig.core.SetRxBfo(0, 250);
  ASSERT_TRUE(waitForLine("RxBfoUpdated 0 250"));
  EXPECT_EQ(server.ask("l IF"), "250");
  EXPECT_EQ(rig.core.SetRxTime(0, "12:34:56"), Outcome::Done);
  EXPECT_TRUE(waitFor([&] { return server.ask("p TIME") == "45296"; }));
  EXPECT_EQ(rig.core.SetRxTime(0, "noon"), Outcome::Failed);

  rig.listener.clear();
  rig.core.SetRxFrequency(0, false, 10);
  ASSERT_TRUE(waitForLine("RxFrqUpdated 0 150000 0")) << "the server itself checks nothing";
  std::this_thread::sleep_for(milliseconds(700));
  rig.pump();
  for (const auto& heard : rig.listener.heard) EXPECT_FALSE(heard.global) << heard.line;
}

TEST_F(RigctldLive, NoticesWhatAnotherClientDoes) {
  RealRigctld server;
  ASSERT_NO_FATAL_FAILURE(open(server));
  rig.listener.clear();
  server.ask("F 9580000");
  ASSERT_TRUE(waitForLine("RxFrqUpdated 0 9580000 1"));
  server.ask("M CW 500");
  ASSERT_TRUE(waitFor([&] { return rig.core.GetRxMode(0) == kCw; }));
  ASSERT_TRUE(waitFor([&] { return rig.core.GetRxFilter(0) == 500; }));
  server.ask("L ATT 20");
  ASSERT_TRUE(waitForLine("RxAttUpdated 0 2 20"));
  for (const auto& heard : rig.listener.heard) {
    if (heard.name == "RxFrqUpdated" || heard.name == "RxAttUpdated") {
      EXPECT_TRUE(heard.global);
    }
  }
}

TEST_F(RigctldLive, GoesOnListeningAndTakesWhatThePanelSendsWhileRemoteControlIsOff) {
  RealRigctld server;
  ASSERT_NO_FATAL_FAILURE(open(server));
  EXPECT_EQ(rig.core.SetRxRemote(0, false), Outcome::Done);
  ASSERT_TRUE(waitForLine("RxRmtState 0 0"));
  rig.listener.clear();
  server.ask("F 9580000");
  ASSERT_TRUE(waitForLine("RxFrqUpdated 0 9580000 1"));
  EXPECT_TRUE(waitFor([&] { return rig.listener.count("RxSMtUpdated") > 5; }));
  rig.core.SetRxMode(0, kCw);
  ASSERT_TRUE(waitFor([&] { return server.ask("m") == "CW"; })) << "as automatic mode does";
  EXPECT_TRUE(rig.core.IsRxOnline(0));
  EXPECT_FALSE(rig.core.GetRxRemote(0));
  EXPECT_EQ(rig.core.SetRxRemote(0, true), Outcome::Done);
  ASSERT_TRUE(waitForLine("RxRmtState 0 1"));
  EXPECT_EQ(rig.listener.count("RxConnState"), 0U) << "it is the panel's lock, no disconnection";
}

TEST_F(RigctldLive, OutlivesAServerThatIsStoppedOrKilled) {
  RealRigctld server;
  ASSERT_NO_FATAL_FAILURE(open(server));
  server.stop();
  EXPECT_TRUE(waitForLink(LinkState::NotResponding)) << "it might be waiting for its radio";
  EXPECT_FALSE(rig.core.IsRxOnline(0));
  EXPECT_EQ(rig.core.SetRxFrequency(0, false, 7'000'000), Outcome::Failed);
  server.go();
  EXPECT_TRUE(waitForLink(LinkState::Up)) << "without a retry";
  EXPECT_EQ(server.ask("f"), "145000000");

  server.kill();
  EXPECT_TRUE(waitForLink(LinkState::Error));
  rig.core.SetRxConnect(0, true);
  EXPECT_TRUE(waitForLink(LinkState::CannotOpen));
  server.start();
  rig.listener.clear();
  rig.core.SetRxConnect(0, true);
  EXPECT_TRUE(waitForLink(LinkState::Up));
  EXPECT_EQ(rig.listener.lines("RxConnState"), Lines{"RxConnState 0 1000"});
  rig.core.SetRxFrequency(0, false, 7'050'000);
  EXPECT_TRUE(waitForLine("RxFrqUpdated 0 7050000 0"));

  server.ask("\\set_powerstat 0");
  EXPECT_TRUE(waitForLink(LinkState::NotResponding));
  server.ask("+\\set_powerstat 1");
  EXPECT_TRUE(waitForLink(LinkState::Up));
}

TEST_F(RigctldLive, AnswersEachOpeningAndClosing) {
  RealRigctld server;
  ASSERT_NO_FATAL_FAILURE(open(server));
  for (int i = 0; i < 20; ++i) {
    rig.core.SetRxConnect(0, false);
    rig.core.SetRxConnect(0, true);
  }
  ASSERT_TRUE(waitForLink(LinkState::Up));
  rig.listener.clear();
  rig.core.SetRxConnect(0, true);
  EXPECT_FALSE(rig.core.IsRxOnline(0));
  ASSERT_TRUE(waitForLine("RxConnState 0 1000"));
  EXPECT_EQ(rig.listener.lines("RxConnState"), Lines{"RxConnState 0 1000"});
  rig.core.SetRxConnect(0, false);
  rig.pump();
  std::this_thread::sleep_for(milliseconds(300));
  rig.pump();
  EXPECT_FALSE(rig.core.IsRxOnline(0));
}

TEST_F(RigctldLive, StartsItsOwnServerRestartsOneThatDiedAndEndsIt) {
  int port = 0;
  {
    // Its port is free afterwards.
    const RealRigctld probe;
    port = probe.port();
  }
  rig.configure("[Receiver 1]\r\nKind=rigctld\r\nPort=" + std::to_string(port) +
                "\r\nCommand=rigctld -m 1 -T 127.0.0.1 -t " + std::to_string(port) + "\r\n");
  rig.open();
  EXPECT_TRUE(waitForLink(LinkState::Up)) << "it is waited for until it listens";
  EXPECT_EQ(rig.listener.lines("RxConnState"), Lines{"RxConnState 0 1000"});
  RealRigctld::killWhoListensAt(port);
  EXPECT_TRUE(waitForLink(LinkState::Error));
  EXPECT_TRUE(waitForLink(LinkState::Up)) << "without a retry";
  rig.core.SetRxFrequency(0, false, 7'050'000);
  EXPECT_TRUE(waitForLine("RxFrqUpdated 0 7050000 0"));
  rig.core.SetRxConnect(0, false);
  EXPECT_TRUE(waitFor([&] { return RealRigctld::askAt(port, "f").empty(); })) << "ended with it";
}

TEST_F(RigctldLive, EightRadiosDoNotFeelEachOther) {
  std::vector<std::unique_ptr<RealRigctld>> servers;
  std::string sections;
  for (int i = 0; i < kMostReceivers; ++i) {
    servers.push_back(std::make_unique<RealRigctld>());
    sections += section(std::to_string(i + 1), *servers.back());
  }
  rig.configure(sections);
  ASSERT_EQ(rig.open(), kMostReceivers);
  const auto allBut = [&](Index out) {
    for (Index rx = 0; rx < kMostReceivers; ++rx) {
      if (rx != out && !rig.core.IsRxOnline(rx)) return false;
    }
    return true;
  };
  ASSERT_TRUE(waitFor([&] { return allBut(-1); }));
  servers[2]->kill();
  servers[5]->stop();
  ASSERT_TRUE(waitFor([&] { return !rig.core.IsRxOnline(2) && !rig.core.IsRxOnline(5); }));
  for (Index rx = 0; rx < kMostReceivers; ++rx) {
    if (rx == 2 || rx == 5) continue;
    rig.core.SetRxFrequency(rx, false, 7'000'000 + rx);
    EXPECT_TRUE(waitForLine("RxFrqUpdated " + std::to_string(rx) + " " +
                            std::to_string(7'000'000 + rx) + " 0"));
  }
  servers[2]->start();
  servers[5]->go();
  auto retryAt = std::chrono::steady_clock::now();
  EXPECT_TRUE(waitFor([&] {
    // The panel's part: what is down is asked for again and again.
    const auto now = std::chrono::steady_clock::now();
    for (Index rx = 0; now >= retryAt && rx < kMostReceivers; ++rx) {
      if (!rig.core.IsRxOnline(rx)) rig.core.SetRxConnect(rx, true);
    }
    if (now >= retryAt) retryAt = now + std::chrono::seconds(1);
    return allBut(-1);
  }));
}

}  // namespace
}  // namespace kelvane::sondrel
