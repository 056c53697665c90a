#include <windows.h>

#include <gtest/gtest.h>

#include <memory>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

/// The window of all receivers, opened and used by the mouse.
class AllReceivers : public testing::Test {
 protected:
  void SetUp() override {
    instance_.writeReceivers(
        "Version=1\r\n[Receiver]\r\nName=A\r\nFrequency=7100000\r\n"
        "[Receiver]\r\nName=B\r\nFrequency=14200000\r\n[Receiver]\r\nName=C\r\nModes=USB\r\n");
    panel_ = std::make_unique<RunningPanel>(instance_.name());
    ASSERT_TRUE(panel_->settledOn(0));
    panel_->click(id::Opener + 6);
    ASSERT_TRUE(eventually([this] { return window() != nullptr; }));
  }
  HWND window() const { return panel_->findWindow(L"KelvaneOverview"); }
  std::string row(int number) const {
    wchar_t words[512] = L"";
    SendMessageW(GetDlgItem(window(), id::AllRow + number), WM_GETTEXT, 512,
                 reinterpret_cast<LPARAM>(words));
    return narrow(words);
  }
  bool says(int number, const std::string& words) const {
    return eventually([&] { return row(number).find(words) != std::string::npos; });
  }
  /// A place over the frequency of a row.
  POINT frequencyOf(int number) const {
    RECT area{};
    GetWindowRect(GetDlgItem(window(), id::AllRow + number), &area);
    return {area.left + 200, (area.top + area.bottom) / 2};
  }
  void drag(int from, int to) {
    const POINT start = frequencyOf(from), end = frequencyOf(to);
    panel_->pressAt(start.x, start.y);
    pointAt(start.x, (start.y + end.y) / 2);
    pointAt(end.x, end.y);
  }

  const Instance instance_{L"TestOverview"};
  std::unique_ptr<RunningPanel> panel_;
};

TEST_F(AllReceivers, AreTunedByTheWheelAndCopiedByDragging) {
  ASSERT_TRUE(says(1, "14200.000 kHz")) << row(1);
  const POINT second = frequencyOf(1);
  pointAt(second.x, second.y);
  panel_->turnWheel(-120);
  EXPECT_TRUE(says(1, "14200.500 kHz")) << row(1);
  EXPECT_EQ(panel_->digits(), "  7100000") << "another receiver is shown";

  drag(0, 1);
  panel_->release();
  EXPECT_TRUE(says(1, "2 B, 7100.000 kHz")) << row(1);
  EXPECT_EQ(panel_->selectedTab(), 0) << "a drag shows no receiver";
  PostMessageW(GetDlgItem(window(), id::AllTakeBack), BM_CLICK, 0, 0);
  EXPECT_TRUE(says(1, "14200.500 kHz")) << row(1);

  drag(0, 1);
  panel_->keyHere(VK_ESCAPE);
  panel_->release();
  Sleep(300);
  EXPECT_TRUE(says(1, "14200.500 kHz")) << "Escape has dropped it: " << row(1);
  EXPECT_NE(window(), nullptr) << "and did not close the window";

  panel_->clickAt(second.x, second.y);
  EXPECT_TRUE(eventually([this] { return panel_->selectedTab() == 1; })) << "a click shows it";
  EXPECT_TRUE(says(1, "2 B, shown"));
}

}  // namespace
}  // namespace kelvane::wine
