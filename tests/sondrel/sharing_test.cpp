#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <thread>

#include "base/number.h"
#include "tests/fakes/real_rigctld.h"
#include "tests/fakes/sharing_program.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

using fakes::SharingProgram;
using fakes::SondrelRig;
using Lines = std::vector<std::string>;

/// A receiver that programs may tune, and a slave of it.
class ShareRig : public testing::Test {
 protected:
  void open(const std::string& keys = "Share=tune\n") {
    rig.configure("[Receiver 1]\nName=Attic\n" + keys + "[Receiver 2]\nName=Slave\n");
    rig.clock.now = std::chrono::steady_clock::now();
    rig.open();
  }
  /// Delivers events until something has come about; false after ten seconds.
  bool waitFor(const std::function<bool()>& come) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!come()) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(milliseconds(1));
      rig.pump();
    }
    return true;
  }
  int port() {
    std::string address;
    EXPECT_TRUE(waitFor([&] { return !(address = core.GetRxShareAddress(0).value()).empty(); }));
    return static_cast<int>(num(address.substr(address.rfind(':') + 1)));
  }
  bool waitForPrograms(Count count) {
    return waitFor([&] { return core.GetRxProgramCount(0) == count; });
  }
  bool waitForFrequency(Hz frequency) {
    return waitFor([&] { return core.GetRxFrequency(0, kTuned) == frequency; });
  }
  bool serves(const SharingProgram& program) {
    for (Index i = 0; i < core.GetRxProgramCount(0).value(); ++i) {
      if (core.GetRxProgram(0, i).value() == program.address()) return true;
    }
    return false;
  }
  Lines passing() const { return rig.listener.lines("RxFrqPassing"); }
  Lines counted() const { return rig.listener.lines("RxFrqUpdated"); }

  SondrelRig rig;
  SondrelCore& core = rig.core;
};

TEST_F(ShareRig, NothingIsSharedUntilItIsAsked) {
  open("");
  EXPECT_EQ(core.GetRxShareState(0).value(), "");
  EXPECT_EQ(core.GetRxShareAddress(0).value(), "");
  EXPECT_EQ(core.nextDue() == kNever, false) << "the meters go on";
  EXPECT_FALSE(std::filesystem::exists(rig.instanceFolder() / "sharing.lock"));
}

TEST_F(ShareRig, AProgramTunesAndItCountsOnceItHasStood) {
  open();
  core.SetRxForward(0);
  SharingProgram program(port());
  EXPECT_EQ(program.ask("f"), "7100000\n");
  EXPECT_EQ(program.ask("F 7050000"), "RPRT 0\n");
  EXPECT_EQ(program.ask("f"), "7050000\n") << "whether it was carried out yet or not";
  ASSERT_TRUE(waitForFrequency(7'050'000));
  ASSERT_TRUE(waitFor([&] { return !passing().empty(); }));
  EXPECT_EQ(passing(), Lines{"RxFrqPassing 0 7050000"});
  EXPECT_EQ(core.GetRxMovedBy(0).value(), program.address());
  rig.run(milliseconds(1900));
  EXPECT_EQ(counted(), Lines{});
  EXPECT_EQ(core.GetRxFrequency(1, kTuned), 7'100'000);
  rig.run(milliseconds(200));
  EXPECT_EQ(counted(), (Lines{"RxFrqUpdated 0 7050000 1", "RxFrqUpdated 1 7050000 0"}));
  EXPECT_TRUE(rig.listener.heard.end() !=
              std::ranges::find_if(rig.listener.heard, [](const auto& heard) {
                return heard.name == "RxFrqUpdated" && heard.global;
              }));
  core.SetRxFrequency(0, false, 7'060'000);
  EXPECT_EQ(core.GetRxMovedBy(0).value(), "");
  EXPECT_EQ(program.ask("f"), "7060000\n");
}

TEST_F(ShareRig, ATrialOfTheResolutionReachesNobody) {
  open();
  core.SetRxForward(kForwardAll);
  core.StoreRxChannel(0, 5);
  rig.pump();
  rig.listener.clear();
  SharingProgram program(port());
  for (const Hz frequency : {7'100'055, 7'100'000}) {
    EXPECT_EQ(program.ask("F " + std::to_string(frequency) + ".000000"), "RPRT 0\n");
    ASSERT_TRUE(waitForFrequency(frequency));
  }
  rig.run(milliseconds(5000));
  EXPECT_EQ(passing(), (Lines{"RxFrqPassing 0 7100055", "RxFrqPassing 0 7100000"}));
  EXPECT_EQ(counted(), Lines{});
  EXPECT_EQ(core.GetRxFrequency(1, kTuned), 7'100'000);
  EXPECT_EQ(core.GetRxChannel(0), 5);
}

TEST_F(ShareRig, TheOperatorsHandCountsAtOnceAlsoWhereAProgramWasFirst) {
  open();
  core.SetRxForward(0);
  SharingProgram program(port());
  program.ask("F 7050000");
  ASSERT_TRUE(waitForFrequency(7'050'000));
  core.SetRxFrequency(0, false, 7'050'000);
  rig.pump();
  EXPECT_EQ(counted(), (Lines{"RxFrqUpdated 0 7050000 0", "RxFrqUpdated 1 7050000 0"}));
  program.ask("F 7040000");
  ASSERT_TRUE(waitForFrequency(7'040'000));
  rig.run(milliseconds(1000));
  program.ask("F 7040000");
  rig.run(milliseconds(1100));
  EXPECT_EQ(core.GetRxFrequency(1, kTuned), 7'040'000) << "said twice it has stood for no less";
}

TEST_F(ShareRig, AnOperatorsRequestThatAProgramReplacesIsAnsweredAllTheSame) {
  open("Share=tune\nAnswerTime=100\n");
  SharingProgram program(port());
  rig.listener.clear();
  core.SetRxFrequency(0, false, 7'050'000);
  core.SetRxFrequency(0, false, 7'051'000);
  program.ask("F 7052000");
  ASSERT_TRUE(waitForFrequency(7'052'000));
  rig.run(milliseconds(500));
  EXPECT_EQ(counted(), Lines{"RxFrqUpdated 0 7052000 1"});
}

TEST_F(ShareRig, ModesAndLevelsGoTheSameWay) {
  open();
  core.SetRxForward(0);
  SharingProgram program(port());
  EXPECT_EQ(program.ask("M LSB 1800"), "RPRT 0\n");
  EXPECT_EQ(program.ask("m"), "LSB\n1800\n");
  program.ask("L ATT 20");
  ASSERT_TRUE(waitFor([&] { return core.GetRxAttDb(0) == 20; }));
  EXPECT_EQ(core.GetRxModeName(0, core.GetRxMode(0)).value(), "LSB");
  EXPECT_EQ(core.GetRxFilter(0), 1800);
  EXPECT_EQ(core.GetRxAttDb(1), 0);
  rig.run(milliseconds(2100));
  EXPECT_EQ(core.GetRxFilter(1), 1800);
  EXPECT_EQ(core.GetRxAttDb(1), 20);
}

TEST_F(ShareRig, SettingsTakeEffectAtOnceAndKeepWhoIsThere) {
  open();
  const Long link = core.GetRxLinkState(0);
  SharingProgram program(port());
  EXPECT_EQ(program.ask("F 7050000"), "RPRT 0\n");
  ASSERT_TRUE(waitForFrequency(7'050'000));
  rig.listener.clear();
  DriversModel model = core.drivers();
  EXPECT_EQ(model.setParameter(0, "Share", "sometimes").reason(),
            "Share must be off, look or tune.");
  EXPECT_EQ(model.setParameter(0, "Share", "look").reason(), "");
  ASSERT_TRUE(core.applyDrivers(model));
  rig.pump();
  EXPECT_EQ(program.ask("F 7060000"), "RPRT -22\n");
  EXPECT_EQ(core.GetRxLinkState(0), link);
  EXPECT_EQ(rig.listener.count("RxConnState"), 0U) << "the radio's link is left alone";
  EXPECT_TRUE(core.GetRxShareState(0).value().ends_with(", to look: 1 program."));
  EXPECT_EQ(model.setParameter(0, "Share", "off").reason(), "");
  ASSERT_TRUE(core.applyDrivers(model));
  EXPECT_EQ(program.receive(), "");
  EXPECT_EQ(core.GetRxShareState(0).value(), "");
}

TEST_F(ShareRig, TheOperatorSeesWhoIsThereAndMayEndOne) {
  open();
  const int at = port();
  SharingProgram first(at);
  ASSERT_TRUE(waitForPrograms(1));
  SharingProgram second(at);
  ASSERT_TRUE(waitForPrograms(2));
  EXPECT_EQ(rig.listener.lines("RxShareUpdated").back(), "RxShareUpdated 0 2");
  EXPECT_EQ(core.GetRxProgram(0, 0).value(), first.address());
  EXPECT_EQ(core.GetRxProgram(0, 1).value(), second.address());
  EXPECT_FALSE(core.GetRxProgram(0, 2).ok());
  EXPECT_EQ(core.EndRxProgram(0, "127.0.0.1:1"), Outcome::Failed);
  EXPECT_EQ(core.EndRxProgram(0, first.address()), Outcome::Done);
  EXPECT_EQ(first.receive(), "");
  ASSERT_TRUE(waitForPrograms(1));
  EXPECT_EQ(second.ask("f"), "7100000\n");
  EXPECT_EQ(second.ask("q"), "RPRT 0\n");
  EXPECT_EQ(second.receive(), "");
  ASSERT_TRUE(waitForPrograms(0));
}

TEST_F(ShareRig, ALostLinkIsHeldAndHeals) {
  open("Share=tune\nShareHold=300\n");
  SharingProgram program(port());
  EXPECT_EQ(program.ask("f"), "7100000\n");
  ASSERT_TRUE(waitForPrograms(1));
  rig.clock.now = std::chrono::steady_clock::now();
  core.SetRxConnect(0, false);
  EXPECT_EQ(program.ask("f"), "7100000\n");
  EXPECT_EQ(program.ask("F 7050000"), "RPRT -5\n");
  EXPECT_EQ(core.GetRxShareState(0).value(), "Held for 1 program, 300 s.");
  rig.clock.now -= std::chrono::seconds(301);
  core.SetRxConnect(0, true);
  rig.pump();
  core.SetRxConnect(0, false);
  EXPECT_EQ(program.ask("f"), "RPRT -5\n");
  core.SetRxConnect(0, true);
  rig.pump();
  EXPECT_EQ(program.ask("F 7050000"), "RPRT 0\n");
}

TEST_F(ShareRig, NobodyIsLetInWhileTheLinkComesUp) {
  // Who came sooner would hear that the radio does not answer.
  rig.configure("[Receiver]\nShare=tune\nLinkTime=3000\n");
  rig.open();
  const auto shared = [&] { return core.GetRxShareState(0).value().starts_with("Shared at "); };
  rig.run(milliseconds(2500));
  ASSERT_FALSE(core.IsRxOnline(0).value());
  EXPECT_EQ(core.GetRxShareState(0).value(), "Programs are let in when the receiver answers.");
  rig.run(milliseconds(1000));
  EXPECT_TRUE(waitFor(shared)) << core.GetRxShareState(0).value();
  SharingProgram program(port());
  EXPECT_EQ(program.ask("f"), "7100000\n");
  rig.configure("[Receiver]\nName=Silent\nShare=tune\nFault=1003\n");
  rig.core.OpenRxConfig("Kelvane", 0);
  rig.run(milliseconds(9000));
  EXPECT_FALSE(shared());
  rig.run(milliseconds(2000));
  EXPECT_TRUE(waitFor(shared)) << "one that never answers is shared, too";
  SharingProgram second(port());
  EXPECT_EQ(second.ask("f"), "RPRT -5\n");
}

TEST_F(ShareRig, APortThatIsTakenIsSaidAndOneOfTwoProcessesShares) {
  open();
  const int taken = port();
  SondrelRig other;
  other.configure("[Receiver]\nShare=look\nSharePort=" + std::to_string(taken) + "\n");
  other.open();
  const auto saysSo = [&] {
    other.pump();
    return other.core.GetRxShareState(0).value() ==
           "Port " + std::to_string(taken) +
               " is in use by another program. It is tried again every few seconds.";
  };
  EXPECT_TRUE(waitFor(saysSo));

  fakes::FakeSondrelWindows windows;
  Instant now = rig.clock.now;
  SondrelCore second(
      rig.folder.path(), [&] { return now; }, [] {}, windows);
  second.OpenRxConfig("Kelvane", 0);
  EXPECT_EQ(second.GetRxShareState(0).value(),
            "Another program has these receivers open and shares them already.");
  EXPECT_EQ(second.GetRxShareAddress(0).value(), "");
  rig.core.OpenRxConfig("Elsewhere", 0);
  now += std::chrono::seconds(6);
  second.tick(now);
  EXPECT_TRUE(waitFor([&] {
    second.tick(now);
    second.deliverEvents();
    return !second.GetRxShareAddress(0).value().empty();
  })) << "it takes over when the first is gone";
}

TEST_F(ShareRig, NobodyHoldsUpAnotherAndThereIsALimit) {
  open();
  const int at = port();
  SharingProgram patient(at);
  EXPECT_EQ(patient.ask("f"), "7100000\n");
  auto deaf = std::make_unique<SharingProgram>(at);
  ASSERT_TRUE(waitForPrograms(2));
  std::string row;
  for (int i = 0; i < 1000; ++i) row += "\\dump_state\n";
  // Until its own buffers are full and it is closed. Whoever looks for servers on this computer may
  // come and go meanwhile.
  for (int i = 0; i < 5000 && serves(*deaf); ++i) {
    deaf->send(row);
    ASSERT_EQ(patient.ask("f"), "7100000\n");
    rig.pump();
  }
  EXPECT_FALSE(serves(*deaf));
  ASSERT_TRUE(waitForPrograms(1));
  std::vector<std::unique_ptr<SharingProgram>> crowd;
  for (int i = 0; i < 199; ++i) crowd.push_back(std::make_unique<SharingProgram>(at));
  ASSERT_TRUE(waitForPrograms(200));
  SharingProgram tooMany(at);
  EXPECT_EQ(tooMany.receive(), "");
  for (const auto& program : crowd) EXPECT_EQ(program->ask("f"), "7100000\n");
}

TEST_F(ShareRig, ServesBothFamiliesOfThisComputerAlone) {
  if (!std::filesystem::exists("/proc/net/if_inet6")) GTEST_SKIP() << "there is one family here";
  open();
  const int at = port();
  SharingProgram newer(at, SharingProgram::Family::New);
  EXPECT_EQ(newer.ask("f"), "7100000\n") << "localhost may mean either";
  ASSERT_TRUE(waitForPrograms(1));
  EXPECT_TRUE(core.GetRxProgram(0, 0).value().starts_with("[::1]:"));
  rig.configure("[Receiver]\nName=Elsewhere\nShare=look\nShareAddress=192.0.2.77\n");
  rig.core.OpenRxConfig("Kelvane", 0);
  EXPECT_TRUE(waitFor([&] {
    return core.GetRxShareState(0).value().starts_with(
        "This computer has no address of 192.0.2.77, port ");
  })) << core.GetRxShareState(0).value();
}

TEST_F(ShareRig, WhoComesAndGoesWithoutEndDisturbsNobody) {
  open();
  const int at = port();
  SharingProgram patient(at);
  ASSERT_EQ(patient.ask("f"), "7100000\n");
  for (int i = 0; i < 2000; ++i) {
    SharingProgram hasty(at);
    ASSERT_TRUE(hasty.connected());
    // Its last words come together with its end.
    if (i % 2 == 0) hasty.send("F 7050000\n");
    if (i % 100 == 0) {
      ASSERT_EQ(patient.ask("f").size(), 8U);
      rig.pump();
    }
  }
  ASSERT_TRUE(waitForPrograms(1)) << core.GetRxProgramCount(0);
  ASSERT_TRUE(waitForFrequency(7'050'000));
  EXPECT_EQ(patient.ask("f"), "7050000\n");
}

TEST_F(ShareRig, ManyCommandsInOnePacketAreAnsweredInOne) {
  open();
  SharingProgram program(port());
  std::string row, answers;
  for (int i = 0; i < 100; ++i) {
    row += "f\n";
    answers += "7100000\n";
  }
  program.send(row);
  EXPECT_EQ(program.receive(), answers);
}

/// What a command prints.
std::string printed(const std::string& command) {
  std::string text;
  FILE* pipe = ::popen((command + " 2>/dev/null").c_str(), "r");
  for (int c; pipe && (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
  if (pipe) ::pclose(pipe);
  return text;
}

TEST_F(ShareRig, AGenuineClientUsesIt) {
  if (printed("command -v rigctl").empty()) {
    ASSERT_EQ(std::getenv("CI"), nullptr) << "rigctl is not installed";
    GTEST_SKIP() << "rigctl is not installed";
  }
  open();
  const std::string client = "rigctl -m 2 -r 127.0.0.1:" + std::to_string(port()) + " ";
  EXPECT_EQ(printed(client + "f m s"), "7100000\nAM\n6000\n0\nVFOA\n");
  EXPECT_EQ(printed(client + "F 7050000 M USB 2400 f m"), "7050000\nUSB\n2400\n");
  ASSERT_TRUE(waitForFrequency(7'050'000));
  EXPECT_EQ(core.GetRxFilter(0), 2400);
  EXPECT_EQ(printed(client + "l STRENGTH").find("error"), std::string::npos);
  EXPECT_EQ(printed(client + "L ATT 20 l ATT"), "20\n");
  EXPECT_NE(printed(client + "F 99999999").find("Invalid parameter"), std::string::npos);
  // The genuine server in front of it repeats whatever its own clients say. When the last of them
  // goes it closes its radio, and one that comes in that moment is answered with nothing.
  fakes::RealRigctld chain({"-m", "2", "-r", "127.0.0.1:" + std::to_string(port())});
  std::optional<SharingProgram> program;
  const auto isServed = [&] { return program.emplace(chain.port()).ask("f") == "7050000\n"; };
  ASSERT_TRUE(waitFor(isServed));
  EXPECT_EQ(program->ask("F 7060000"), "RPRT 0\n");
  ASSERT_TRUE(waitForFrequency(7'060'000));
  EXPECT_EQ(program->ask("m").substr(0, 4), "USB\n");
  EXPECT_EQ(program->ask("+f").substr(0, 9), "get_freq:");
  EXPECT_EQ(program->ask("l ATT"), "20\n");
}

}  // namespace
}  // namespace kelvane::sondrel
