#include <windows.h>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr int kCtrl = 2;

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

  const Instance instance_{L"TestKeys"};
  RunningPanel panel_{instance_.name()};
};

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
  pointAt(area.left + 5, area.top + 5);
  panel_.turnWheel(120);
  EXPECT_TRUE(shows("  7049500")) << panel_.digits();
  panel_.click(id::FrqDigit + 4);
  panel_.turnWheel(-120);
  EXPECT_TRUE(shows("  7059500")) << panel_.digits();
}

}  // namespace
}  // namespace kelvane::wine
