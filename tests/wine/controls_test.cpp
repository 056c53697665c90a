#include <windows.h>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr int kMaster = id::GenEvent, kForward = id::GenEvent + 1, kSpare = id::GenEvent + 2;

/// A running program with its four receivers up.
class Controls : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(panel_.settledOn(0)); }

  bool pressed(int id) const {
    return SendMessageW(panel_.control(id), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }
  /// Presses or releases a button by mouse.
  bool press(int id, bool down) {
    panel_.click(id);
    return eventually([&] { return pressed(id) == down; });
  }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_.digits() == digits; });
  }
  testing::AssertionResult select(int tab) {
    panel_.clickTab(tab);
    return panel_.settledOn(tab);
  }

  const Instance instance_{L"TestControls"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(Controls, TheMasterTakesAllOthersAlongAndTheirEventsNeverMoveTheDisplay) {
  ASSERT_TRUE(select(1));
  ASSERT_TRUE(press(kMaster, true));
  panel_.type("3050\r");
  ASSERT_TRUE(shows("  3050000")) << panel_.digits();
  EXPECT_FALSE(eventually([&] { return panel_.selectedTab() != 1; }, 1500));
  for (const int slave : {0, 2, 3}) {
    ASSERT_TRUE(select(slave));
    EXPECT_TRUE(eventually([&] { return panel_.digits().find("3050") != std::string::npos; }))
        << slave << panel_.digits();
    EXPECT_TRUE(pressed(kMaster));
  }
  // A slave's own change stays its own.
  panel_.type("3500\r");
  ASSERT_TRUE(eventually([&] { return panel_.digits().find("3500") != std::string::npos; }));
  ASSERT_TRUE(select(1));
  ASSERT_TRUE(shows("  3050000")) << panel_.digits();
  EXPECT_FALSE(eventually([&] { return panel_.digits() != "  3050000"; }, 500));
}

TEST_F(Controls, ForwardingAndMasterExcludeEachOtherAndTheSpareButtonDoesNothing) {
  ASSERT_TRUE(press(kMaster, true));
  ASSERT_TRUE(press(kForward, true));
  EXPECT_TRUE(eventually([&] { return !pressed(kMaster); }));
  panel_.click(kSpare);
  EXPECT_TRUE(eventually([&] { return !pressed(kSpare); }));
  EXPECT_TRUE(pressed(kForward));
  ASSERT_TRUE(select(2));
  panel_.type("2500\r");
  ASSERT_TRUE(eventually([&] { return panel_.digits().find("2500") != std::string::npos; }));
  ASSERT_TRUE(select(1));
  EXPECT_TRUE(shows("  2500000")) << panel_.digits();
  ASSERT_TRUE(press(kForward, false));
  panel_.type("5500\r");
  ASSERT_TRUE(shows("  5500000"));
  ASSERT_TRUE(select(2));
  EXPECT_FALSE(eventually([&] { return panel_.digits().find("5500") != std::string::npos; }, 500));
}

TEST_F(Controls, EachSettingStepsOncePerClickAndIsReleased) {
  EXPECT_EQ(panel_.text(id::ModEvent + 3), "Att:Off");
  EXPECT_EQ(panel_.text(id::ModEvent + 4), "NB:Off");
  for (int button = 0; button < 5; ++button) {
    const int id = id::ModEvent + button;
    const std::string before = panel_.text(id);
    panel_.click(id);
    EXPECT_FALSE(eventually([&] { return pressed(id); }, 30)) << "it is no check box";
    EXPECT_TRUE(eventually([&] { return panel_.text(id) != before; })) << before;
  }
  EXPECT_EQ(panel_.text(id::ModEvent + 3), "10dB");
  EXPECT_NE(panel_.text(id::ModEvent + 4).substr(0, 3), "NB:");
}

TEST_F(Controls, QuickClicksAreAsManySteps) {
  const int attenuator = id::ModEvent + 3;
  for (int i = 0; i < 2; ++i) PostMessageW(panel_.control(attenuator), BM_CLICK, 0, 0);
  EXPECT_TRUE(eventually([&] { return panel_.text(attenuator) == "20dB"; }))
      << panel_.text(attenuator);
  panel_.click(attenuator);
  panel_.clickHere();  // the second press of a double click
  EXPECT_TRUE(eventually([&] { return panel_.text(attenuator) == "Att:Off"; }))
      << panel_.text(attenuator);
  for (int i = 0; i < 2; ++i) SendMessageW(panel_.control(kMaster), BM_CLICK, 0, 0);
  EXPECT_TRUE(eventually([&] { return !pressed(kMaster); })) << "pressed and released";
}

TEST_F(Controls, APressIsSeenAndActsOnlyWhereItIsReleasedAgain) {
  const auto down = [&](int id) {
    return (SendMessageW(panel_.control(id), BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
  };
  const int attenuator = id::ModEvent + 3;
  panel_.type("7050\r");
  ASSERT_TRUE(shows("  7050000"));
  panel_.pressOn(attenuator);
  EXPECT_TRUE(eventually([&] { return down(attenuator); }));
  panel_.pointAtControl(id::Band);
  EXPECT_TRUE(eventually([&] { return !down(attenuator); })) << "to let go now would do nothing";
  panel_.release();
  panel_.pressOn(id::SM);
  panel_.pointAtControl(id::Band);
  panel_.release();
  PostMessageW(panel_.control(id::Band), WM_LBUTTONUP, 0, 0);  // of a window that closed over it
  PostMessageW(panel_.control(id::LockImg), WM_LBUTTONUP, 0, 0);
  panel_.key(VK_RIGHT);
  EXPECT_TRUE(shows("  7050500")) << panel_.digits();
  EXPECT_EQ(panel_.text(attenuator), "Att:Off");
  EXPECT_TRUE(panel_.visible(id::LockImg));
  EXPECT_EQ(panel_.text(id::SM).front(), 'S');
}

}  // namespace
}  // namespace kelvane::wine
