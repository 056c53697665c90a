#include <windows.h>

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "tests/wine/instance.h"
#include "tests/wine/real_rigctld.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace fs = std::filesystem;

/// A program that runs in a folder of the test's own, where the log lies.
class KeyboardTest : public testing::Test {
 protected:
  ~KeyboardTest() override {
    panel_.reset();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  void start(const std::string& receivers) {
    instance_.writeReceivers("Version=1\r\n" + receivers);
    fs::create_directories(folder_);
    panel_ = std::make_unique<RunningPanel>(instance_.name(), programFolder(), folder_);
    ASSERT_TRUE(panel_->settledOn(0));
  }

  HWND focused() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(panel_->window(), nullptr), &info);
    return info.hwndFocus;
  }

  const Instance instance_{L"TestKeyboard"};
  fs::path folder_ = fs::temp_directory_path() / L"kelvane-keyboard-test";
  std::unique_ptr<RunningPanel> panel_;
};

TEST_F(KeyboardTest, StaysInTheLogWhileALinkComesUpAndMovesTheDisplay) {
  start("[Receiver]\r\nName=Attic\r\n[Receiver]\r\nName=Barn\r\nFault=1006\r\nFaultHeals=6\r\n");
  panel_->type("7050\r");
  ASSERT_TRUE(eventually([&] { return panel_->digits() == "  7050000"; }));
  panel_->type(" ");
  HWND log = nullptr;
  ASSERT_TRUE(eventually([&] { return (log = panel_->findWindow(L"KelvaneLog")) != nullptr; }));
  ASSERT_TRUE(giveKeyboard(log));
  ASSERT_TRUE(eventually([&] { return IsWindowEnabled(GetDlgItem(log, IDOK)) != 0; }));
  const HWND grid = GetDlgItem(log, id::PadGrd);
  std::string typed;
  const auto letter = [&] {
    typed += static_cast<char>('a' + typed.size() % 26);
    panel_->keyHere(static_cast<WORD>('A' + (typed.size() - 1) % 26));
  };
  for (int i = 0; i < 10; ++i) letter();
  const auto arrived = [&] { return textOf(GetDlgItem(grid, kEntry)) == typed; };
  ASSERT_TRUE(eventually(arrived)) << textOf(GetDlgItem(grid, kEntry));
  EXPECT_TRUE(eventually([&] { return panel_->selectedTab() == 1; }, 20000)) << "the display moves";
  for (int i = 0; i < 10; ++i) letter();
  EXPECT_TRUE(eventually(arrived)) << textOf(GetDlgItem(grid, kEntry));
}

TEST_F(KeyboardTest, GoesToTheTypedEntryFromAButtonWhoseReceiverFallsSilent) {
  const int port = freePort();
  RealRigctld server(port);
  ASSERT_TRUE(server.start());
  start("[Receiver]\r\nName=Attic\r\nKind=rigctld\r\nHost=127.0.0.1\r\nPort=" +
        std::to_string(port) + "\r\n[Receiver]\r\nName=Barn\r\nLinkTime=60000\r\n");
  panel_->key(VK_F6);
  panel_->key(VK_F6);
  ASSERT_TRUE(eventually([&] { return focused() == panel_->control(id::ModEvent); }));
  server.signal("KILL");
  ASSERT_TRUE(eventually([&] { return !panel_->enabled(id::ModEvent); }));
  EXPECT_EQ(focused(), panel_->control(id::FrqFocus));
  panel_->keyHere('F');
  panel_->keyHere('C');
  ASSERT_TRUE(server.start());
  ASSERT_TRUE(eventually([&] { return panel_->enabled(id::ModEvent); }, 20000));
  EXPECT_EQ(SendMessageW(panel_->control(id::GenEvent + 1), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  EXPECT_EQ(panel_->findWindow(L"KelvaneConfig"), nullptr);
  for (const WORD key : {'7', '0', '5', '0'}) panel_->keyHere(key);
  panel_->keyHere(VK_RETURN);
  EXPECT_TRUE(eventually([&] { return panel_->digits() == "  7050000"; })) << panel_->digits();
}

}  // namespace
}  // namespace kelvane::wine
