#include <windows.h>

#include <gtest/gtest.h>

#include "base/safe_file.h"
#include "base/win32/utf16.h"
#include "companions/mini_help.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

/// A running program, and the card of keys over it.
class HelpCardWindow : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(panel_.settledOn(0)); }

  HWND open() {
    panel_.key(VK_F1);
    HWND window = nullptr;
    eventually([&] { return (window = panel_.findWindow(L"KelvaneMiniHelp")) != nullptr; });
    EXPECT_TRUE(giveKeyboard(window));
    return window;
  }
  static bool gone(HWND window) {
    return eventually([window] { return !IsWindow(window); });
  }
  static std::string text(HWND window) {
    std::wstring text(8000, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return narrow(text);
  }
  static std::string clipboard() {
    std::string text;
    if (!OpenClipboard(nullptr)) return text;
    if (const HANDLE held = GetClipboardData(CF_UNICODETEXT)) {
      text = narrow(static_cast<const wchar_t*>(GlobalLock(held)));
      GlobalUnlock(held);
    }
    CloseClipboard();
    return text;
  }
  static POINT place(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return {area.left, area.top};
  }

  const Instance instance_{L"TestHelp"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(HelpCardWindow, ShowsTheWholeCardOnTopAndGivesItToTheClipboard) {
  const HWND window = open();
  ASSERT_TRUE(window);
  EXPECT_EQ(text(window), std::string(MiniHelp::kCaption));
  EXPECT_TRUE(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST);
  const HWND card = GetDlgItem(window, id::HelpCard);
  const std::string shown = text(card);
  EXPECT_NE(shown.find("Kelvane 1.0.0"), std::string::npos);
  EXPECT_NE(shown.find("Up/Down 100Hz"), std::string::npos);
  EXPECT_NE(shown.find("Press the button"), std::string::npos) << "cut off";
  EXPECT_EQ(shown.find("\\"), std::string::npos) << "markup that nobody understood";
  panel_.keyHere('A', kCtrl);
  const DWORD before = GetClipboardSequenceNumber();
  panel_.keyHere('C', kCtrl);
  // Who looks into the clipboard all the time keeps others from writing to it.
  EXPECT_TRUE(eventually([before] { return GetClipboardSequenceNumber() != before; }));
  EXPECT_TRUE(eventually([] { return clipboard().find("DATABASE CONTROL") != std::string::npos; }));
  panel_.keyHere('X', kCtrl);
  EXPECT_EQ(text(card), shown) << "the card is for reading";
}

TEST_F(HelpCardWindow, OpensWhereEscapeLeftItAndForgetsWhereItWasClosedOtherwise) {
  HWND window = open();
  ASSERT_TRUE(window);
  const POINT over = place(panel_.window());
  EXPECT_EQ(place(window).x, over.x);
  EXPECT_EQ(place(window).y, over.y);
  SetWindowPos(window, nullptr, over.x + 90, over.y + 45, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  panel_.keyHere(VK_ESCAPE);
  ASSERT_TRUE(gone(window));
  window = open();
  const POINT again = place(window);
  EXPECT_EQ(again.x, over.x + 90);
  EXPECT_EQ(again.y, over.y + 45);
  SetWindowPos(window, nullptr, over.x + 30, over.y + 15, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  PostMessageW(window, WM_CLOSE, 0, 0);
  ASSERT_TRUE(gone(window));
  window = open();
  EXPECT_EQ(place(window).x, again.x);
  panel_.key(VK_RIGHT);
  EXPECT_TRUE(IsWindow(window)) << "the operator works on beside it";
}

TEST_F(HelpCardWindow, SavesAReportForWhoeverHelpsAndSaysWhere) {
  ASSERT_TRUE(open());
  panel_.keyHere('S', kAlt);
  const std::string words = panel_.messageBox();
  const std::filesystem::path file = instance_.folder() / L"report.txt";
  EXPECT_NE(words.find(pathText(file)), std::string::npos) << words;
  const std::string report = readFile(file, 1 << 20).value_or("");
  for (const char* part :
       {"Sondrel.dll 1.0.0", "1: Harrow: 1000 up", "receiver 4: RxConnState 1000", "Kind=simulated",
        "AutoMode=yes", "-bit program"})
    EXPECT_NE(report.find(part), std::string::npos) << part << "\n" << report;
  panel_.answer(IDOK);
}

TEST_F(HelpCardWindow, OpensByItsButtonToo) {
  panel_.click(id::Opener + 5);
  EXPECT_TRUE(eventually([&] { return panel_.findWindow(L"KelvaneMiniHelp") != nullptr; }));
}

}  // namespace
}  // namespace kelvane::wine
