#include "ui/keyboard.h"

#include <gtest/gtest.h>

#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using fakes::PanelRig;

TEST(Keyboard, StaysInAnotherWindowWhateverTheReceiversDo) {
  PanelRig rig(
      "[Receiver]\r\nName=Attic\r\n[Receiver]\r\nName=Barn\r\nFault=1006\r\nFaultHeals=4\r\n");
  rig.start(milliseconds(200));
  rig.window.focus(id::FrqDigit + 5);
  rig.window.leave();
  rig.run(milliseconds(20000));
  ASSERT_TRUE(rig.sondrel.core.IsRxOnline(1));
  rig.turnKnob(1, 6000000);
  rig.turnKnob(0, 5000000);
  rig.sondrel.core.SetRxRemote(0, false);
  rig.sondrel.core.SetRxRemote(1, false);
  rig.run(milliseconds(20000));
  auto drivers = rig.sondrel.core.drivers();
  drivers.remove(1);
  ASSERT_TRUE(rig.sondrel.core.applyDrivers(drivers));
  rig.run(milliseconds(20000));
  EXPECT_FALSE(rig.window.active());
  EXPECT_EQ(rig.window.focused, fakes::FakeWindow::kNobody);
  rig.window.comeBack();
  EXPECT_EQ(rig.window.focused, id::FrqFocus);
}

TEST(Keyboard, LeavesAControlThatIsLockedForTheTypedEntry) {
  for (const int control : {id::ModEvent + 0, id::ModEvent + 4, id::FrqDigit + 5, id::Opener + 2}) {
    PanelRig rig;
    rig.start();
    rig.window.focus(control);
    ASSERT_EQ(rig.window.focused, control);
    rig.sondrel.core.SetRxRemote(0, false);
    rig.run(milliseconds(100));
    EXPECT_EQ(rig.window.focused, id::FrqFocus) << control;
    EXPECT_FALSE(rig.view().TabStrip.tabs[0].highlighted);
    rig.type("u");
    rig.type("7050\r");
    EXPECT_EQ(rig.digits(), "  7050000") << control;
  }
}

}  // namespace
}  // namespace kelvane
