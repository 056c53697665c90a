#include "controls/openers.h"

#include <gtest/gtest.h>

#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

constexpr int kChannels = 0, kLog = 1, kHelp = 5;

class OpenersTest : public testing::Test {
 protected:
  OpenersTest() {
    auto receivers = std::make_unique<fakes::NotingReceivers>(rig.sondrel.core);
    noting = receivers.get();
    rig.wrapped = std::move(receivers);
    rig.start();
    const std::pair<Companion, const char*> windows[] = {{Companion::Channels, "S"},
                                                         {Companion::Log, "G"},
                                                         {Companion::LogAndRecord, "+"},
                                                         {Companion::Overview, "7"},
                                                         {Companion::Traces, "8"}};
    for (const auto& [window, sign] : windows)
      rig.panel->companions().provide(window, [this, sign = sign] { opened += sign; });
    rig.panel->tabClicked(0);
  }

  PanelRig rig;
  fakes::NotingReceivers* noting = nullptr;
  std::string opened;
};

TEST_F(OpenersTest, ButtonsDoWhatTheirKeysDo) {
  for (int button = 0; button < Openers::kButtons; ++button) rig.click(id::Opener + button);
  EXPECT_EQ(opened, "SG78");
  EXPECT_EQ(rig.ambrelWindows.opened, "KDE");
  EXPECT_EQ(rig.dialogs.helps, 1);
  rig.type("sgkde ");
  for (const int code : {key::F1, key::F7, key::F8}) rig.press(code);
  EXPECT_EQ(opened, "SG78SG+78");
  EXPECT_EQ(rig.ambrelWindows.opened, "KDEKDE");
  EXPECT_EQ(rig.dialogs.helps, 2);
}

TEST_F(OpenersTest, AButtonNeverTakesATypedNumberForAChannel) {
  rig.type("12");
  rig.click(id::Opener + kChannels);
  EXPECT_EQ(opened, "S");
  EXPECT_EQ(noting->stored, 0);
}

TEST_F(OpenersTest, AButtonIsThereWithItsWindowAndOnWhileItWouldDoSomething) {
  PanelRig bare;
  bare.start();
  bare.panel->companions().provide(Companion::Log, {});
  bare.panel->tabClicked(1);
  EXPECT_FALSE(bare.view().Opener[kLog].visible);
  const auto enabled = [this] {
    std::string on;
    for (const Control& button : rig.view().Opener) on += button.enabled ? '1' : '0';
    return on;
  };
  EXPECT_EQ(enabled(), "11111111");
  rig.type("l");
  EXPECT_EQ(enabled(), "00000111");
  rig.type("u");
  rig.panel->tabClicked(2);
  EXPECT_EQ(enabled(), "01111111") << "this receiver has no channels";
  rig.click(id::Opener + kChannels);
  rig.type("s");
  EXPECT_EQ(opened, "");
}

TEST_F(OpenersTest, TheDatabaseLeavesTheKeyboardToTheNumberThatFollows) {
  rig.window.focus(id::GenEvent);
  rig.type("d");
  EXPECT_EQ(rig.window.focused, id::FrqFocus);
  rig.type("1440\r");
  EXPECT_EQ(rig.ambrelWindows.opened, "D");
  EXPECT_EQ(rig.digits(), "  1445000");
}

}  // namespace
}  // namespace kelvane
