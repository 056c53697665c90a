#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>

#include "base/number.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/sharing_program.h"

namespace kelvane {
namespace {

using fakes::SharingProgram;

/// The panel with two receivers, the second of which a program may tune.
class Programs : public testing::Test {
 protected:
  void SetUp() override {
    rig.settings.writeFlag("MonitorChanges", true);
    rig.start();
  }
  int port() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::string address;
    while (address.empty() && std::chrono::steady_clock::now() < end) {
      rig.run(milliseconds(1));
      std::this_thread::sleep_for(milliseconds(1));
      address = rig.receiver().GetRxShareAddress(1).value();
    }
    return static_cast<int>(num(address.substr(address.rfind(':') + 1)));
  }
  void tune(SharingProgram& program, Hz frequency) {
    ASSERT_EQ(program.ask("F " + std::to_string(frequency)), "RPRT 0\n");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (rig.receiver().GetRxFrequency(1, kTuned) != frequency &&
           std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(milliseconds(1));
      rig.sondrel.pump();
    }
    ASSERT_EQ(rig.receiver().GetRxFrequency(1, kTuned), frequency);
  }
  int shown() { return rig.view().TabStrip.selected; }

  fakes::PanelRig rig{"[Receiver 1]\nName=Harrow\n[Receiver 2]\nName=Attic\nShare=tune\n"};
};

TEST_F(Programs, TheDigitsFollowAtOnceAndATrialIsNotSpokenOf) {
  rig.panel->tabClicked(1);
  rig.run(milliseconds(3000));
  ASSERT_EQ(shown(), 1);
  const std::string said = rig.view().Announced.text;
  SharingProgram program(port());
  tune(program, 7'100'055);
  rig.run(milliseconds(1900));
  EXPECT_EQ(rig.digits(), "  7100055");
  EXPECT_EQ(rig.view().Announced.text, said);
  tune(program, 7'100'000);
  rig.run(milliseconds(10'000));
  EXPECT_EQ(rig.digits(), "  7100000");
  EXPECT_EQ(rig.view().Announced.text, said);
  tune(program, 7'050'000);
  rig.run(milliseconds(5000));
  EXPECT_EQ(rig.view().Announced.text, "7050 kHz") << "what has stood counts";
}

TEST_F(Programs, OnlyWhatHasStoodPullsTheDisplay) {
  rig.panel->tabClicked(0);
  rig.run(milliseconds(3000));
  ASSERT_EQ(shown(), 0);
  SharingProgram program(port());
  tune(program, 7'050'000);
  rig.run(milliseconds(1900));
  EXPECT_EQ(shown(), 0);
  rig.run(milliseconds(2000));
  EXPECT_EQ(shown(), 1);
}

TEST_F(Programs, TheStatusBoxSaysForHowManyALostReceiverIsHeld) {
  rig.panel->tabClicked(1);
  rig.run(milliseconds(3000));
  const SharingProgram program(port());
  for (int i = 0; i < 1000 && rig.receiver().GetRxProgramCount(1) == 0; ++i) {
    std::this_thread::sleep_for(milliseconds(1));
    rig.sondrel.pump();
  }
  rig.receiver().SetRxConnect(1, false);
  std::set<std::string> said;
  for (int i = 0; i < 20; ++i) {
    rig.run(milliseconds(100));
    if (rig.view().RxMask.visible) said.insert(rig.view().RxMask.text);
  }
  EXPECT_TRUE(said.contains("Rx: Not responding"));
  EXPECT_TRUE(std::ranges::any_of(said, [](const std::string& words) {
    return words.starts_with("Held for 1 program, ");
  })) << testing::PrintToString(said);
  rig.run(milliseconds(3000));
  EXPECT_EQ(rig.view().Announced.text.find("Held"), std::string::npos) << "no speech each second";
}

}  // namespace
}  // namespace kelvane
