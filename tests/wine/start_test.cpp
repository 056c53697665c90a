#include <windows.h>

#include <fstream>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

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

TEST(Start, SurvivesNamesThatNoKeyOrFileCanHave) {
  for (const std::wstring& name :
       {std::wstring(L"two words"), std::wstring(L"a\\b/c:d"), std::wstring(300, L'n')}) {
    RunningPanel panel(name);
    EXPECT_TRUE(panel.settledOn(0));
    panel.close();
    EXPECT_EQ(panel.ended(), 0);
  }
}

}  // namespace
}  // namespace kelvane::wine
