#include "win32/tab_strip.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include "win32/text.h"

namespace kelvane::win32 {
namespace {

class TabStripTest : public testing::Test {
 protected:
  TabStripTest() {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_TAB_CLASSES};
    InitCommonControlsEx(&controls);
    parent_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 900, 100, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    strip_ = std::make_unique<TabStrip>(parent_);
    strip_->show({{{"&Attic", "Select receiver"}, {"R&&&S", "Select another"}}, 0});
  }
  ~TabStripTest() override { DestroyWindow(parent_); }

  HWND parent_ = nullptr;
  std::unique_ptr<TabStrip> strip_;
};

TEST_F(TabStripTest, SelectsWhatIsShownThoughTheControlSelectedAnotherByItself) {
  SendMessageW(strip_->window(), TCM_SETCURSEL, 1, 0);
  strip_->show({{{"&Attic", "Select receiver"}, {"R&&&S", "Select another"}}, 0});
  EXPECT_EQ(strip_->selected(), 0);
}

TEST_F(TabStripTest, TellsEachTabsToolTip) {
  NMTTDISPINFOW asked{};
  asked.hdr.code = TTN_GETDISPINFOW;
  asked.hdr.hwndFrom =
      reinterpret_cast<HWND>(SendMessageW(strip_->window(), TCM_GETTOOLTIPS, 0, 0));
  asked.hdr.idFrom = 1;
  ASSERT_TRUE(strip_->explains(asked.hdr));
  EXPECT_EQ(narrow(asked.lpszText), "Select another");
  asked.hdr.idFrom = 2;
  EXPECT_FALSE(strip_->explains(asked.hdr));
}

}  // namespace
}  // namespace kelvane::win32
