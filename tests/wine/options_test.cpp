#include <windows.h>

#include <commctrl.h>

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "tests/wine/instance.h"
#include "tests/wine/open_dialog.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace rx = sondrel::id;

/// A running program with the operator before its options.
class OptionsDialog : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(panel_.settledOn(0)); }
  OpenDialog open() {
    PostMessageW(panel_.control(id::ConfigButton), BM_CLICK, 0, 0);
    return {panel_, L"KelvaneConfig"};
  }
  bool onTop() const { return (GetWindowLongW(panel_.window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }

  const Instance instance_{L"TestOptions"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(OptionsDialog, CancelLeavesTheRegistryAloneAndOkWritesAllOfIt) {
  OpenDialog dialog = open();
  ASSERT_TRUE(dialog.isOpen());
  EXPECT_FALSE(IsWindowEnabled(panel_.window()));
  EXPECT_TRUE(dialog.checked(id::WndBeep));
  EXPECT_FALSE(dialog.checked(id::DDEOAct));
  ASSERT_TRUE(dialog.ticked(id::WndBeep, false));
  dialog.key(panel_, VK_ESCAPE);
  ASSERT_TRUE(dialog.gone());
  EXPECT_TRUE(IsWindowEnabled(panel_.window()));
  EXPECT_FALSE(instance_.number(L"WindowsBeep"));

  dialog = open();
  EXPECT_TRUE(dialog.checked(id::WndBeep)) << "what was cancelled is forgotten";
  ASSERT_TRUE(dialog.ticked(id::WndBeep, false));
  ASSERT_TRUE(dialog.ticked(id::DDEOAct, true));
  dialog.key(panel_, VK_RETURN);
  ASSERT_TRUE(dialog.gone());
  EXPECT_EQ(instance_.number(L"WindowsBeep"), 0);
  EXPECT_EQ(instance_.number(L"DDELink"), -1);
  for (const wchar_t* other : {L"WindowsOnTop", L"MonitorChanges", L"FollowCarrier", L"AutoMode",
                               L"AutoFilter", L"SendTime"})
    EXPECT_EQ(instance_.number(other), -1);
}

TEST_F(OptionsDialog, OnTopActsAtOnceAndForwardingIsOff) {
  ASSERT_TRUE(eventually([&] { return onTop(); }));
  PostMessageW(panel_.control(id::GenEvent + 1), BM_CLICK, 0, 0);
  const auto forwarding = [&] {
    return SendMessageW(panel_.control(id::GenEvent + 1), BM_GETCHECK, 0, 0) == BST_CHECKED;
  };
  ASSERT_TRUE(eventually(forwarding));
  const OpenDialog dialog = open();
  ASSERT_TRUE(dialog.isOpen());
  EXPECT_TRUE(eventually([&] { return !forwarding(); }));
  EXPECT_TRUE(GetWindowLongW(dialog.window(), GWL_EXSTYLE) & WS_EX_TOPMOST);
  ASSERT_TRUE(dialog.ticked(id::WndOTop, false));
  dialog.press(IDOK);
  ASSERT_TRUE(dialog.gone());
  EXPECT_TRUE(eventually([&] { return !onTop(); }));
  EXPECT_FALSE(forwarding());
  EXPECT_TRUE(eventually([&] {
    return SendMessageW(panel_.control(id::ConfigButton), BM_GETCHECK, 0, 0) == BST_UNCHECKED;
  }));
}

TEST_F(OptionsDialog, CtrlTabOpensTheDriversWhereAReceiverIsRemovedAndTheTabsFollow) {
  const OpenDialog options = open();
  ASSERT_TRUE(options.isOpen());
  options.key(panel_, VK_TAB, 2);
  OpenDialog drivers(panel_, L"KelvaneDrivers");
  ASSERT_TRUE(drivers.isOpen());
  EXPECT_EQ(options.tab(), 0);
  EXPECT_FALSE(IsWindowEnabled(options.window()));
  ASSERT_EQ(drivers.rows(rx::Receivers), 4);
  drivers.press(rx::Remove);
  ASSERT_TRUE(eventually([&] { return drivers.rows(rx::Receivers) == 3; }));
  drivers.press(IDCANCEL);
  ASSERT_TRUE(drivers.gone());
  EXPECT_TRUE(eventually([&] { return options.tab() == 2; }));
  EXPECT_EQ(panel_.tabs(), 4);

  options.key(panel_, VK_TAB, 2);
  drivers = OpenDialog(panel_, L"KelvaneDrivers");
  drivers.press(rx::Remove);
  ASSERT_TRUE(eventually([&] { return drivers.rows(rx::Receivers) == 3; }));
  const std::string name = drivers.text(rx::Name);
  drivers.type(rx::Name, L"");
  EXPECT_NE(drivers.text(rx::Problem), "");
  drivers.press(IDOK);
  EXPECT_FALSE(eventually([&] { return !drivers.isOpen(); }, 300)) << "a wrong name is not taken";
  drivers.type(rx::Name, L"Attic");
  EXPECT_EQ(drivers.text(rx::Problem), "");
  drivers.press(IDOK);
  ASSERT_TRUE(drivers.gone());
  EXPECT_TRUE(eventually([&] { return panel_.tabs() == 3; }));
  options.press(IDCANCEL);
  ASSERT_TRUE(options.gone());
  EXPECT_TRUE(eventually([&] { return panel_.caption().find("Attic") != std::string::npos; }))
      << panel_.caption() << ", was " << name;
  std::stringstream file;
  file << std::ifstream(instance_.folder() / L"receivers.txt").rdbuf();
  EXPECT_NE(file.str().find("Name=Attic"), std::string::npos);
}

TEST_F(OptionsDialog, AFaultFromTheReceiversSettingsIsSaidOnThePanelAndHeals) {
  const OpenDialog options = open();
  ASSERT_TRUE(options.isOpen());
  RECT tab{};
  GetWindowRect(options.item(id::All), &tab);
  panel_.clickAt(tab.left + 80, tab.top + 10);
  const OpenDialog settings(panel_, L"KelvaneReceiver");
  ASSERT_TRUE(settings.isOpen());
  EXPECT_TRUE(eventually([&] { return options.tab() == 2; }));
  options.press(IDCANCEL);
  ASSERT_TRUE(options.gone());
  ASSERT_TRUE(settings.isOpen()) << "it outlives the dialog that it was opened from";

  settings.type(rx::Frequency, L"7150000");
  settings.press(rx::Tune);
  EXPECT_TRUE(eventually([&] { return panel_.digits() == "  7150000"; })) << panel_.digits();
  settings.type(rx::HealsAfter, L"2");
  settings.choose(rx::Fault, 3);
  settings.press(rx::Apply);
  EXPECT_TRUE(eventually([&] { return panel_.text(id::RxMask) == "Link: Timeout"; }))
      << panel_.text(id::RxMask);
  EXPECT_FALSE(panel_.enabled(id::FrqDigit + 5));
  EXPECT_TRUE(eventually([&] { return panel_.enabled(id::FrqDigit + 5); }, 30000));
  EXPECT_TRUE(eventually([&] { return settings.text(rx::State) == "Link: Up"; }));
  settings.key(panel_, VK_ESCAPE);
  EXPECT_TRUE(settings.gone()) << "its keys work in the panel's message loop";
}

}  // namespace
}  // namespace kelvane::wine
