#include <windows.h>

#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>

#include "base/instance_name.h"
#include "base/win32/utf16.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"
#include "ui/main_controls.h"

namespace kelvane::wine {
namespace {

TEST(Start, ComesToRestOnTheFirstOfFourReceivers) {
  const Instance instance(L"TestStart");
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  EXPECT_EQ(panel.tabs(), 4);
  EXPECT_EQ(panel.caption().rfind("Kelvane 1.0.0 - Receiver ", 0), 0u) << panel.caption();
  EXPECT_EQ(panel.text(id::RNG), "1R");
  EXPECT_EQ(panel.digits().find('x'), std::string::npos) << panel.digits();
  panel.close();
  EXPECT_EQ(panel.ended(), 0);
}

TEST(Start, ShowsTheUsageAndEnds) {
  RunningPanel panel(L"-?");
  EXPECT_EQ(panel.messageBox().rfind("Usage:\tKelvane.exe (NAME) (-clean)", 0), 0u);
  panel.answer(IDOK);
  EXPECT_EQ(panel.ended(), 0);
}

TEST(Start, CleansTheNamedInstanceAndEnds) {
  const Instance instance(L"TestClean");
  instance.write(L"MainLeft", 1234);
  RunningPanel panel(instance.name() + L" -clean");
  EXPECT_EQ(panel.messageBox(),
            "Cleaning TestClean registry context\r\nPlease restart application");
  EXPECT_TRUE(instance.hasSettings());
  panel.answer(IDOK);
  EXPECT_EQ(panel.ended(), 0);
  EXPECT_FALSE(instance.hasSettings());
}

TEST(Start, SavesWhereTheWindowWasAndComesBackThere) {
  const Instance instance(L"TestPlace");
  {
    RunningPanel panel(instance.name());
    ASSERT_TRUE(panel.settledOn(0));
    SetWindowPos(panel.window(), nullptr, 200, 150, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    panel.close();
    ASSERT_EQ(panel.ended(), 0);
  }
  EXPECT_EQ(instance.number(L"MainLeft"), 3000);
  EXPECT_EQ(instance.number(L"MainTop"), 2250);
  EXPECT_TRUE(instance.number(L"MainWidth") && instance.number(L"MainHeight"));
  RunningPanel again(instance.name());
  ASSERT_TRUE(again.shown());
  RECT area;
  GetWindowRect(again.window(), &area);
  EXPECT_EQ(area.left, 200);
  EXPECT_EQ(area.top, 150);
}

TEST(Start, BringsAWindowBackFromBeyondEveryScreenAndIgnoresSettingsOfAnotherKind) {
  const Instance instance(L"TestFarAway");
  instance.write(L"MainLeft", 900000);
  instance.write(L"MainTop", REG_SZ, L"far", 8);
  instance.write(L"WindowsOnTop", REG_BINARY, "abc", 3);
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.shown());
  RECT area;
  GetWindowRect(panel.window(), &area);
  EXPECT_NE(MonitorFromRect(&area, MONITOR_DEFAULTTONULL), nullptr);
  EXPECT_LT(area.left, GetSystemMetrics(SM_CXSCREEN));
  EXPECT_TRUE(eventually(
      [&] { return (GetWindowLongW(panel.window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }));
}

/// The user's text size, as Windows' settings keep it; gone with the object.
class TextSize {
 public:
  explicit TextSize(DWORD percent) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kValue, REG_DWORD, &percent, sizeof percent);
  }
  ~TextSize() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kValue); }

 private:
  static constexpr const wchar_t* kKey = L"Software\\Microsoft\\Accessibility";
  static constexpr const wchar_t* kValue = L"TextScaleFactor";
};

LONG insideWidth(HWND window) {
  RECT inside;
  GetClientRect(window, &inside);
  return inside.right;
}

TEST(Start, GrowsWithTheUsersTextSizeAsFarAsTheScreenHasRoom) {
  const Instance instance(L"TestTextSize");
  const int dpi = static_cast<int>(GetDpiForSystem());
  const auto scaled = [dpi](int length, int percent) {
    return MulDiv(length, MulDiv(dpi, percent, 100), 96);
  };
  {
    const TextSize larger(150);
    RunningPanel panel(instance.name());
    ASSERT_TRUE(panel.settledOn(0));
    EXPECT_EQ(insideWidth(panel.window()), scaled(kMainWidth, 150));
    EXPECT_EQ(insideWidth(panel.control(id::RxMask)), scaled(56 + 456, 150) - scaled(56, 150));
    PostMessageW(panel.control(id::ConfigButton), BM_CLICK, 0, 0);
    HWND options = nullptr;
    ASSERT_TRUE(
        eventually([&] { return (options = panel.findWindow(L"KelvaneConfig")) != nullptr; }));
    EXPECT_EQ(insideWidth(options), scaled(420, 150));
    PostMessageW(options, WM_CLOSE, 0, 0);
  }
  const TextSize senseless(100'000);
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.shown());
  EXPECT_GT(insideWidth(panel.window()), scaled(kMainWidth, 100));
  EXPECT_LE(insideWidth(panel.window()),
            std::min<LONG>(scaled(kMainWidth, 225), GetSystemMetrics(SM_CXSCREEN)));
}

TEST(Start, KeepsItsLayoutOnAScreenOfAnotherResolution) {
  const Instance instance(L"TestScreens");
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  RECT before, digit, larger;
  GetWindowRect(panel.window(), &before);
  GetWindowRect(panel.control(id::FrqDigit + 4), &digit);
  panel.moveToResolution(144);
  GetWindowRect(panel.control(id::FrqDigit + 4), &larger);
  EXPECT_NEAR(larger.right - larger.left, (digit.right - digit.left) * 1.5, 1);
  EXPECT_NEAR(larger.bottom - larger.top, (digit.bottom - digit.top) * 1.5, 1);
  panel.moveToResolution(96);
  GetWindowRect(panel.window(), &larger);
  EXPECT_EQ(larger.right - larger.left, before.right - before.left);
  EXPECT_EQ(larger.bottom - larger.top, before.bottom - before.top);
  GetWindowRect(panel.control(id::FrqDigit + 4), &larger);
  EXPECT_EQ(larger.right - larger.left, digit.right - digit.left);
}

TEST(Start, SaysWhichComponentIsMissingAndWritesNothing) {
  const struct {
    const wchar_t* file;
    const char* message;
  } components[] = {{L"Sondrel.dll", "Error: Receiver Control (Sondrel.dll) not found"},
                    {L"Ambrel.dll", "Error: Frequency control (Ambrel.dll) not found"}};
  const Instance instance(L"TestMissing");
  for (const auto& component : components) {
    for (const char* content : {"", "junk, no library"}) {
      const ProgramCopy copy;
      std::filesystem::remove(copy.folder() / component.file);
      std::ofstream(copy.folder() / component.file, std::ios::binary) << content;
      RunningPanel panel(instance.name(), copy.folder());
      EXPECT_EQ(panel.messageBox(), component.message);
      panel.answer(IDOK);
      EXPECT_NE(panel.ended(), -1);
    }
    const ProgramCopy copy;
    std::filesystem::remove(copy.folder() / component.file);
    RunningPanel panel(instance.name(), copy.folder());
    EXPECT_EQ(panel.messageBox(), component.message);
    panel.answer(IDOK);
    EXPECT_NE(panel.ended(), -1);
  }
  EXPECT_FALSE(instance.hasSettings());
}

TEST(Start, KeepsInstancesApartWhoseNamesNoKeyOrFileCanHave) {
  const std::string longName(300, 'n');
  for (const std::string& name :
       {std::string("two words"), std::string("a\\b/c:d"), longName + "1", longName + "2"}) {
    const Instance settings(wide(safeInstanceName(name))), files(wide(safeFileName(name)));
    RunningPanel panel(wide(name));
    ASSERT_TRUE(panel.settledOn(0)) << name;
    panel.close();
    EXPECT_EQ(panel.ended(), 0);
    EXPECT_TRUE(settings.hasSettings()) << name;
    EXPECT_TRUE(std::filesystem::exists(files.folder() / L"receivers.txt")) << name;
  }
}

TEST(Start, AgainBringsTheRunningWindowToTheFrontAndEnds) {
  const Instance instance(L"TestOnce"), other(L"TestOnceMore");
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  RunningPanel beside(other.name());
  ASSERT_TRUE(beside.settledOn(0)) << "another instance has a panel of its own";
  SetWindowPos(panel.window(), nullptr, -3000, -3000, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  ShowWindow(panel.window(), SW_MINIMIZE);
  // Names of keys and files do not tell capital letters from small ones.
  for (const wchar_t* name : {L"TestOnce", L"TESTONCE"}) {
    RunningPanel again(name);
    EXPECT_EQ(again.ended(), 0);
    EXPECT_EQ(again.findWindow(L"KelvaneMAin"), nullptr);
    EXPECT_TRUE(eventually([&] { return GetForegroundWindow() == panel.window(); }));
    EXPECT_FALSE(IsIconic(panel.window()));
    EXPECT_TRUE(eventually([&] {
      RECT area;
      GetWindowRect(panel.window(), &area);
      return MonitorFromRect(&area, MONITOR_DEFAULTTONULL) != nullptr;
    }));
  }
  EXPECT_EQ(beside.selectedTab(), 0) << "it goes on as it was";
}

TEST(Start, DoesNotCleanAnInstanceThatRunsAndStartsItAnewWhenItHasEnded) {
  const Instance instance(L"TestCleanLater");
  instance.write(L"MainLeft", 1234);
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  RunningPanel clean(instance.name() + L" -clean");
  EXPECT_EQ(clean.messageBox().rfind("TestCleanLater is running, so nothing was cleaned.", 0), 0u);
  clean.answer(IDOK);
  EXPECT_EQ(clean.ended(), 0);
  EXPECT_EQ(instance.number(L"MainLeft"), 1234);
  panel.close();
  // Not waited for: a panel that is just ending does not count as one that runs.
  RunningPanel again(instance.name());
  EXPECT_TRUE(again.settledOn(0));
  EXPECT_EQ(panel.ended(), 0);
}

TEST(Start, AsksAgainForAListOfReceiversThatAnotherProgramHoldsAndReplacesNothing) {
  const Instance instance(L"TestHeldList");
  instance.writeReceivers("Version=1\r\n[Receiver 1]\r\nName=Attic\r\n");
  const auto list = instance.folder() / L"receivers.txt";
  const HANDLE held =
      CreateFileW(list.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  RunningPanel panel(instance.name());
  EXPECT_EQ(panel.messageBox().rfind("Cannot read ", 0), 0u);
  panel.answer(IDRETRY);
  EXPECT_EQ(panel.messageBox().rfind("Cannot read ", 0), 0u) << "it is still held";
  CloseHandle(held);
  panel.answer(IDRETRY);
  ASSERT_TRUE(panel.settledOn(0));
  EXPECT_EQ(panel.tabs(), 1);
  EXPECT_NE(panel.caption().find("Attic"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(instance.folder() / L"receivers.damaged-1.txt"));
}

}  // namespace
}  // namespace kelvane::wine
