#include "controls/focus_groups.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

class FocusGroupsTest : public testing::Test {
 protected:
  FocusGroupsTest() { rig.start(); }
  int after(int keyCode, int shift = 0) {
    rig.press(keyCode, shift);
    return rig.window.focused;
  }

  PanelRig rig;
};

TEST_F(FocusGroupsTest, F6WalksRoundTheGroupsAndShiftWalksBack) {
  EXPECT_EQ(after(key::F6), id::FrqDigit + 5);
  EXPECT_EQ(after(key::F6), id::ModEvent);
  EXPECT_EQ(after(key::F6), id::GenEvent);
  EXPECT_EQ(after(key::F6), id::TabStrip);
  EXPECT_EQ(after(key::F6), id::FrqFocus);
  EXPECT_EQ(after(key::F6, key::ShiftHeld), id::TabStrip);
  EXPECT_EQ(after(key::F6, key::ShiftHeld), id::GenEvent);
}

TEST_F(FocusGroupsTest, GroupsWithNothingToOfferArePassedOver) {
  rig.type("l");
  EXPECT_EQ(after(key::F6), id::GenEvent);
  EXPECT_EQ(after(key::F6, key::ShiftHeld), id::FrqFocus);
}

TEST_F(FocusGroupsTest, EnterPressesAButtonAndLeavesTheKeyboardOnIt) {
  rig.window.focus(id::ModEvent);
  rig.type("\r");
  EXPECT_EQ(rig.window.focused, id::ModEvent) << "the next Enter presses it again";
  rig.window.focus(id::GenEvent);
  rig.type("\r");
  EXPECT_TRUE(rig.view().GenEvent[0].pressed);
  rig.type("\r");
  EXPECT_FALSE(rig.view().GenEvent[0].pressed);
}

TEST_F(FocusGroupsTest, AltAndALetterPressesTheButtonThatMarksIt) {
  EXPECT_TRUE(rig.panel->accelerator('m'));
  EXPECT_TRUE(rig.view().GenEvent[0].pressed);
  EXPECT_TRUE(rig.panel->accelerator('F'));
  EXPECT_TRUE(rig.view().GenEvent[1].pressed);
  EXPECT_FALSE(rig.view().GenEvent[0].pressed);
  EXPECT_TRUE(rig.panel->accelerator('c'));
  EXPECT_EQ(rig.dialogs.configs, 1);
  EXPECT_TRUE(rig.panel->accelerator('p'));
  EXPECT_EQ(rig.dialogs.helps, 1);
  EXPECT_TRUE(rig.panel->accelerator('q'));
  EXPECT_EQ(rig.view().TabStrip.selected, 1);
  EXPECT_FALSE(rig.panel->accelerator('z'));
  EXPECT_FALSE(rig.panel->accelerator(0)) << "Alt alone, as after Alt and an arrow";
  rig.type("l");
  EXPECT_FALSE(rig.panel->accelerator('k')) << "a button that is off";
}

}  // namespace
}  // namespace kelvane
