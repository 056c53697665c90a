#include <windows.h>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

/// A running program with its first receiver up.
class Tuning : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(panel_.settledOn(0)); }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_.digits() == digits; });
  }

  const Instance instance_{L"TestTuning"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(Tuning, TakesKilohertzFromTheKeyboard) {
  panel_.type("7050\r");
  EXPECT_TRUE(shows("  7050000")) << panel_.digits();
  panel_.type("7.1234\b\r");
  EXPECT_TRUE(shows("     7120")) << panel_.digits();
  panel_.type("10000\r");
  panel_.type("2.5+");
  EXPECT_TRUE(shows(" 10002500")) << panel_.digits();
  panel_.type("999\x1b");
  EXPECT_TRUE(shows(" 10002500")) << panel_.digits();
}

TEST_F(Tuning, StepsAndOverwritesASelectedDigit) {
  panel_.type("7050\r");
  ASSERT_TRUE(shows("  7050000"));
  panel_.click(id::FrqDigit + 5);
  panel_.key(VK_UP);
  EXPECT_TRUE(shows("  7051000")) << panel_.digits();
  panel_.key(VK_LEFT);
  panel_.key(VK_DOWN);
  EXPECT_TRUE(shows("  7041000")) << panel_.digits();
  panel_.type("99\r");
  EXPECT_TRUE(shows("  7099000")) << panel_.digits();
}

TEST_F(Tuning, SelectsReceiversByTabAndByAccelerator) {
  const std::string first = panel_.caption();
  panel_.clickTab(2);
  EXPECT_TRUE(eventually([&] { return panel_.selectedTab() == 2; }));
  EXPECT_TRUE(eventually([&] { return panel_.caption() != first; }));
  panel_.key('H', 4);
  EXPECT_TRUE(eventually([&] { return panel_.caption() == first; })) << panel_.caption();
  panel_.key('T', 4);
  EXPECT_TRUE(eventually([&] { return panel_.selectedTab() == 2; }));
  panel_.type("600\r");
  EXPECT_TRUE(eventually([&] { return panel_.digits().find("600000") != std::string::npos; }))
      << panel_.digits();
}

TEST_F(Tuning, LocksThePanelWhileRemoteControlIsGivenBack) {
  panel_.type("7050\r");
  ASSERT_TRUE(shows("  7050000"));
  ASSERT_TRUE(panel_.visible(id::LockImg));
  panel_.click(id::LockImg);
  ASSERT_TRUE(eventually([&] { return panel_.visible(id::LockImg + 1); }));
  EXPECT_FALSE(panel_.enabled(id::FrqDigit + 5));
  panel_.type("9000\r");
  EXPECT_FALSE(eventually([&] { return !shows("  7050000"); }, 300));
  panel_.click(id::LockImg + 1);
  EXPECT_TRUE(eventually([&] { return panel_.enabled(id::FrqDigit + 5); }));
}

}  // namespace
}  // namespace kelvane::wine
