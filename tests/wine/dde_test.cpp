#include <windows.h>

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "tests/wine/digit_server.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr COLORREF kLinked = RGB(0x80, 0x80, 0x80), kWaiting = RGB(255, 216, 96);

/// A running program that listens to servers of digits.
class Digits : public testing::Test {
 protected:
  void SetUp() override {
    instance_.write(L"DDELink", -1);
    panel_ = std::make_unique<RunningPanel>(instance_.name());
    ASSERT_TRUE(panel_->settledOn(0));
  }
  COLORREF lamp() {
    RECT place{};
    GetWindowRect(panel_->control(id::DDESts), &place);
    const HDC screen = GetDC(nullptr);
    // In the corner, where no letter is.
    const COLORREF shown = GetPixel(screen, place.left + 1, place.top + 1);
    ReleaseDC(nullptr, screen);
    return shown;
  }
  bool lampIs(COLORREF colour) {
    return eventually([&] { return lamp() == colour; });
  }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_->digits() == digits; });
  }
  /// The longest time that the window took to answer while this many milliseconds passed.
  DWORD longestSilence(DWORD milliseconds) {
    DWORD longest = 0;
    for (const DWORD start = GetTickCount(); GetTickCount() - start < milliseconds; Sleep(5)) {
      const DWORD asked = GetTickCount();
      SendMessageW(panel_->window(), WM_NULL, 0, 0);
      longest = std::max(longest, GetTickCount() - asked);
    }
    return longest;
  }

  const Instance instance_{L"TestDigits"};
  std::unique_ptr<RunningPanel> panel_;
};

TEST_F(Digits, FromAServerThatComesLaterTuneReceiversShownAndNot) {
  EXPECT_TRUE(lampIs(kWaiting));
  DigitServer harrow(L"Kelvane_Harrow"), tern(L"Kelvane_Tern");
  ASSERT_TRUE(harrow.running());
  ASSERT_TRUE(lampIs(kLinked));
  panel_->clickTab(2);
  ASSERT_TRUE(lampIs(kLinked));
  panel_->clickTab(0);
  ASSERT_TRUE(panel_->settledOn(0));
  harrow.say("7123#");
  EXPECT_TRUE(shows("  7123000")) << panel_->digits();
  harrow.say("#");
  EXPECT_TRUE(shows("  7123100")) << panel_->digits();
  tern.say("3050#");
  EXPECT_FALSE(eventually([&] { return panel_->digits() != "  7123100"; }, 1500));
  panel_->clickTab(2);
  EXPECT_TRUE(shows("  3050000")) << panel_->digits();
}

TEST_F(Digits, AServerThatDiesIsMissedAndFoundAgain) {
  auto server = std::make_unique<DigitServer>(L"Kelvane_Harrow");
  ASSERT_TRUE(lampIs(kLinked));
  server->kill();
  EXPECT_TRUE(lampIs(kWaiting));
  server = std::make_unique<DigitServer>(L"Kelvane_Harrow");
  ASSERT_TRUE(lampIs(kLinked));
  server->say("9500#");
  EXPECT_TRUE(shows("  9500000")) << panel_->digits();
}

TEST_F(Digits, AFloodIsBoundedAndTheServerStaysLinked) {
  auto server = std::make_unique<DigitServer>(L"Kelvane_Harrow");
  ASSERT_TRUE(lampIs(kLinked));
  std::string flood = "=#|5";
  for (int i = 0; i < 2999; ++i) flood += "\n=#|5";
  server->say(flood);
  EXPECT_FALSE(eventually([&] { return lamp() != kLinked; }, 4000)) << "failed, or lost";
  server->say("7123#");
  EXPECT_TRUE(shows("  7123000")) << panel_->digits();
  server.reset();
  EXPECT_TRUE(lampIs(kWaiting));
  server = std::make_unique<DigitServer>(L"Kelvane_Harrow");
  ASSERT_TRUE(lampIs(kLinked));
  server->say("9500#");
  EXPECT_TRUE(shows("  9500000")) << panel_->digits();
}

TEST_F(Digits, AServerThatHangsHoldsNeitherThePanelNorTheOthers) {
  DigitServer harrow(L"Kelvane_Harrow"), quill(L"Kelvane_Quill");
  ASSERT_TRUE(lampIs(kLinked));
  panel_->clickTab(1);
  ASSERT_TRUE(lampIs(kLinked));
  harrow.say("8");
  harrow.say("hang 3");
  quill.say("5000#");
  EXPECT_TRUE(shows("  5000000")) << panel_->digits();
  EXPECT_LT(longestSilence(4000), 2000u);
  panel_->clickTab(0);
  ASSERT_TRUE(lampIs(kLinked)) << "what a server says while it is not linked is lost";
  harrow.say("080#");
  EXPECT_TRUE(shows("  8080000")) << panel_->digits();
}

}  // namespace
}  // namespace kelvane::wine
