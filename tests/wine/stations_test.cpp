#include <windows.h>

#include <commctrl.h>

#include <fstream>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "components/ambrel/win32/dialog_ids.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace frq = ambrel::id;

constexpr int kFileName = 0x47c;

bool isForeground(HWND window) {
  return eventually([window] { return GetForegroundWindow() == window; });
}

/// A running program on 6 070 000 Hz, and windows of the frequency component.
class Stations : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(panel_.settledOn(0));
    panel_.type("6070\r");
    ASSERT_TRUE(shows("  6070000"));
  }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_.digits() == digits; });
  }
  /// Types a command and waits for its window.
  HWND open(const char* command, const wchar_t* windowClass) {
    panel_.type(command);
    HWND window = nullptr;
    eventually([&] { return (window = panel_.findWindow(windowClass)) != nullptr; });
    return window;
  }
  /// A key for the window that has the keyboard now.
  void keys(const std::string& characters) {
    for (const char character : characters) {
      const SHORT code = VkKeyScanW(static_cast<unsigned char>(character));
      panel_.keyHere(LOBYTE(code), HIBYTE(code));
    }
  }
  bool says(HWND window, int control, const std::string& words) {
    return eventually(
        [&] { return textOf(GetDlgItem(window, control)).find(words) != std::string::npos; });
  }
  bool bandIs(const std::string& words) {
    return eventually([&] { return panel_.text(id::Band).find(words) != std::string::npos; });
  }
  LRESULT rows(HWND window, int list) {
    return SendMessageW(GetDlgItem(window, list), LVM_GETITEMCOUNT, 0, 0);
  }
  /// Whether the list's selected row is shown with at least three more on either side.
  bool selectedAmongOthers(HWND window, int list) {
    const auto ask = [&](UINT message, WPARAM w = 0, LPARAM l = 0) {
      return SendMessageW(GetDlgItem(window, list), message, w, l);
    };
    return eventually([&] {
      const LRESULT selected = ask(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
      const LRESULT top = ask(LVM_GETTOPINDEX);
      return selected - 3 >= top && selected + 3 < top + ask(LVM_GETCOUNTPERPAGE);
    });
  }
  std::filesystem::path schedule(const char* lines) {
    const auto file = instance_.folder() / L"sked-a99.csv";
    std::ofstream(file, std::ios::binary)
        << "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135;P:35;"
           "Start:60;Stop:60;\r\n"
        << lines;
    return file;
  }
  /// Points the program at a file, in the dialog that it opens for that.
  void load(HWND source, const std::filesystem::path& file) {
    PostMessageW(GetDlgItem(source, frq::Load), BM_CLICK, 0, 0);
    HWND dialog = nullptr;
    ASSERT_TRUE(eventually([&] { return (dialog = panel_.findWindow(L"#32770")) != nullptr; }));
    Sleep(200);
    DWORD_PTR answer = 0;
    EXPECT_NE(SendMessageTimeoutW(panel_.window(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 500, &answer),
              0);
    SendMessageW(GetDlgItem(dialog, kFileName), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(file.wstring().c_str()));
    PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    ASSERT_TRUE(eventually([&] { return !IsWindow(dialog) || !IsWindowVisible(dialog); }));
  }

  const Instance instance_{L"TestStations"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(Stations, AreNamedWithModeAndFilterWhereTheHandTunes) {
  panel_.type("5000\r");
  EXPECT_TRUE(bandIs("WWV")) << panel_.text(id::Band);
  EXPECT_EQ(panel_.text(id::ModEvent), "AM");
  EXPECT_FALSE(panel_.visible(id::BMod)) << "AM already";
  panel_.type("9996\r");
  EXPECT_TRUE(bandIs("RWM")) << panel_.text(id::Band);
  EXPECT_TRUE(eventually([&] { return panel_.visible(id::BMod); }));
  EXPECT_EQ(panel_.text(id::BMod), "CW");
  panel_.type("mb");
  EXPECT_TRUE(eventually([&] { return panel_.text(id::ModEvent) == "CW"; }));
  panel_.type("fb");
  EXPECT_TRUE(eventually([&] { return panel_.text(id::ModEvent + 1) == "500"; }));
  panel_.type("7200\r");
  EXPECT_TRUE(bandIs("Broadcast 41 m")) << panel_.text(id::Band);
  EXPECT_TRUE(eventually([&] { return panel_.text(id::BMod) == "AM"; }));
}

TEST_F(Stations, OfAScheduleAreLoadedThroughTheWindowAndKept) {
  const HWND source = open("e", L"KelvaneSource");
  ASSERT_TRUE(source);
  EXPECT_TRUE(says(source, frq::Status, "No schedule is loaded"));
  const auto file = schedule(
      "6070;0000-2400;;G;Radio Trial;E;Eu;w;1;;\r\nbad line\r\n"
      "6080;0000-2400;;G;Beside;E;Eu;w;1;;\r\n6090;0000-2400;;G;Above;E;Eu;w;1;;\r\n");
  load(source, file);
  EXPECT_TRUE(says(source, frq::Status, "was loaded: season A99, 3 broadcasts"))
      << textOf(GetDlgItem(source, frq::Status));
  EXPECT_TRUE(says(source, frq::Details, "Line 3")) << textOf(GetDlgItem(source, frq::Details));
  EXPECT_TRUE(says(source, frq::Details, "summer"));
  EXPECT_TRUE(bandIs("Radio Trial - English")) << "at once";
  std::ofstream(file, std::ios::binary) << "no schedule at all";
  load(source, file);
  EXPECT_TRUE(says(source, frq::Status, "The data that was there stays"));
  EXPECT_TRUE(bandIs("Radio Trial"));
  panel_.close();
  ASSERT_EQ(panel_.ended(), 0);
  RunningPanel again(instance_.name());
  ASSERT_TRUE(again.settledOn(0));
  again.type("6070\r");
  EXPECT_TRUE(
      eventually([&] { return again.text(id::Band).find("Radio Trial") != std::string::npos; }));
}

TEST_F(Stations, AreFoundByTypingAndTunedToByEnterWhileThePanelGoesOn) {
  const HWND list = open("k", L"KelvaneKnownList");
  ASSERT_TRUE(isForeground(list));
  ASSERT_TRUE(eventually([&] { return rows(list, frq::Stations) > 500; }));
  EXPECT_TRUE(selectedAmongOthers(list, frq::Stations)) << "what is near 6070 kHz";
  keys("volmet");
  panel_.keyHere(VK_TAB);
  // The label's key leads back to the entry, which is then typed over.
  panel_.keyHere('S', 4);
  // Enter before the search has ended means what is typed, not what was found before.
  keys("moscow 9996\r");
  EXPECT_TRUE(shows("  9996000")) << panel_.digits();
  EXPECT_TRUE(eventually([&] { return panel_.text(id::ModEvent) == "CW"; }));
  EXPECT_EQ(rows(list, frq::Stations), 1);
  EXPECT_TRUE(isForeground(list)) << "the list keeps the keyboard";
  panel_.type("7200\r");
  EXPECT_TRUE(shows("  7200000")) << "the panel takes keys beside it";
  PostMessageW(GetDlgItem(list, frq::OnAir), BM_CLICK, 0, 0);
  SendMessageW(GetDlgItem(list, frq::Search), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L""));
  EXPECT_TRUE(eventually([&] { return rows(list, frq::Stations) > 500; }))
      << "what has no times is on the air at all times";
  ASSERT_TRUE(giveKeyboard(list));
  keys("\x1b");
  EXPECT_TRUE(eventually([&] { return !IsWindow(list); }));
}

TEST_F(Stations, AreRefusedToALockedPanel) {
  const HWND list = open("k", L"KelvaneKnownList");
  ASSERT_TRUE(eventually([&] { return rows(list, frq::Stations) > 500; }));
  panel_.type("l");
  ASSERT_TRUE(eventually([&] { return panel_.visible(id::LockImg + 1); }));
  const std::string before = panel_.digits();
  SendMessageW(GetDlgItem(list, frq::Search), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(L"moscow 9996"));
  ASSERT_TRUE(eventually([&] { return rows(list, frq::Stations) == 1; }));
  SendMessageW(GetDlgItem(list, IDOK), BM_CLICK, 0, 0);
  EXPECT_FALSE(eventually([&] { return panel_.digits() != before; }, 500));
}

TEST_F(Stations, TheDatabaseOpensBesideADrmEntryAndGrowsWithItsWindow) {
  const HWND data = open("d", L"KelvaneDataView");
  ASSERT_TRUE(data);
  ASSERT_TRUE(isForeground(panel_.window())) << "the keyboard stays";
  EXPECT_TRUE(selectedAmongOthers(data, frq::Rows)) << "the band of 6070 kHz";
  keys("7200\r");
  EXPECT_TRUE(shows("  7205000")) << panel_.digits();
  EXPECT_GT(rows(data, frq::Rows), 100);
  keys("21000\r");
  EXPECT_TRUE(selectedAmongOthers(data, frq::Rows)) << "far away";
  RECT before, after;
  GetWindowRect(GetDlgItem(data, frq::Rows), &before);
  RECT outer;
  GetWindowRect(data, &outer);
  SetWindowPos(data, nullptr, 0, 0, outer.right - outer.left + 40, outer.bottom - outer.top + 30,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  EXPECT_TRUE(eventually([&] {
    GetWindowRect(GetDlgItem(data, frq::Rows), &after);
    return after.right - after.left == before.right - before.left + 40 &&
           after.bottom - after.top == before.bottom - before.top + 30;
  }));
  EXPECT_EQ(GetWindow(data, GW_OWNER), panel_.window());
}

}  // namespace
}  // namespace kelvane::wine
