#include <windows.h>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr int kShift = 1, kCtrl = 2, kAlt = 4;

/// A running program on 7 050 000 Hz.
class Keys : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(panel_.settledOn(0));
    panel_.type("7050\r");
    ASSERT_TRUE(shows("  7050000"));
  }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_.digits() == digits; });
  }
  void turnWheel(int delta) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_WHEEL;
    input.mi.mouseData = static_cast<DWORD>(delta);
    SendInput(1, &input, sizeof input);
  }

  const Instance instance_{L"TestKeys"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(Keys, TuneWithEveryModifierAndStartNoMenu) {
  panel_.key(VK_RIGHT);
  EXPECT_TRUE(shows("  7050500")) << panel_.digits();
  panel_.key(VK_RIGHT, kShift);
  EXPECT_TRUE(shows("  7050501")) << panel_.digits();
  panel_.key(VK_UP, kCtrl);
  EXPECT_TRUE(shows("  7050511")) << panel_.digits();
  panel_.key(VK_UP, kAlt);
  EXPECT_TRUE(shows("  7050611")) << panel_.digits();
  panel_.key(VK_LEFT);
  EXPECT_TRUE(shows("  7050111")) << "keys still arrive after an Alt combination";
  panel_.key(VK_ADD, kCtrl | kAlt);
  EXPECT_TRUE(eventually([&] { return panel_.text(id::IBank) == "Kf"; }));
}

TEST_F(Keys, SetTheReceiverWhateverHasTheFocus) {
  panel_.click(id::GenEvent + 2);
  panel_.type("mc");
  EXPECT_TRUE(eventually([&] { return panel_.text(id::ModEvent) == "CW"; }));
  panel_.type("500f");
  EXPECT_TRUE(eventually([&] { return panel_.text(id::ModEvent + 1) == "500"; }))
      << panel_.text(id::ModEvent + 1);
  panel_.type("l");
  EXPECT_TRUE(eventually([&] { return panel_.visible(id::LockImg + 1); }));
  panel_.type("u");
  EXPECT_TRUE(eventually([&] { return panel_.visible(id::LockImg); }));
  panel_.type("\t");
  EXPECT_TRUE(eventually([&] { return panel_.selectedTab() == 1; }));
}

TEST_F(Keys, CopyAndPasteTheFrequencyInKilohertz) {
  panel_.type("7123.456\r");
  ASSERT_TRUE(shows("  7123456"));
  panel_.key('C', kCtrl);
  panel_.type("9000\r");
  ASSERT_TRUE(shows("  9000000"));
  panel_.key('V', kCtrl);
  EXPECT_TRUE(shows("  7123456")) << panel_.digits();
}

TEST_F(Keys, TheWheelTunesByTheStepAndBySelectedDigit) {
  RECT area;
  GetWindowRect(panel_.control(id::Band), &area);
  SetCursorPos(area.left + 5, area.top + 5);
  turnWheel(120);
  EXPECT_TRUE(shows("  7049500")) << panel_.digits();
  panel_.click(id::FrqDigit + 4);
  turnWheel(-120);
  EXPECT_TRUE(shows("  7059500")) << panel_.digits();
}

}  // namespace
}  // namespace kelvane::wine
