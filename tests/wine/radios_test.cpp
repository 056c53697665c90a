#include <windows.h>

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <array>
#include <memory>

#include "components/sondrel/win32/dialog_ids.h"
#include "tests/wine/instance.h"
#include "tests/wine/open_dialog.h"
#include "tests/wine/real_rigctld.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace rx = sondrel::id;

constexpr int kServedRadios = 8;
constexpr int kKilled = 2;
constexpr int kStopped = 5;

std::string section(int number, int port) {
  return "[Receiver]\r\nName=R" + std::to_string(number) +
         "\r\nKind=rigctld\r\nPort=" + std::to_string(port) + "\r\n";
}

/// The program with eight radios, each behind a real server.
class EightRadios : public testing::Test {
 protected:
  void SetUp() override {
    std::string receivers = "Version=1\r\n";
    for (int i = 0; i < kServedRadios; ++i) {
      const int port = freePort();
      servers_[i] = std::make_unique<RealRigctld>(port);
      ASSERT_TRUE(servers_[i]->start());
      receivers += section(i, port);
    }
    instance_.writeReceivers(receivers);
    panel_ = std::make_unique<RunningPanel>(instance_.name());
    ASSERT_TRUE(panel_->shown());
    ASSERT_TRUE(eventually([&] { return panel_->tabs() == kServedRadios; }));
  }

  /// Tunes the radio by the panel's keys, and sees that its server has it.
  void tune(int radio, int kilohertz) {
    const auto wanted = std::to_string(kilohertz * 1000);
    const auto tuned = [&] {
      return panel_->selectedTab() == radio && servers_[radio]->ask("f") == wanted &&
             panel_->digits().find(wanted) != std::string::npos;
    };
    panel_->clickTab(radio);
    ASSERT_TRUE(panel_->settledOn(radio));
    panel_->type("\x1b" + std::to_string(kilohertz) + "\r");
    EXPECT_TRUE(eventually(tuned)) << "radio " << radio << ": " << panel_->digits();
  }
  /// Changes its mode by the panel's button.
  void changeMode(int radio) {
    const auto before = servers_[radio]->ask("m");
    panel_->click(id::ModEvent);
    EXPECT_TRUE(eventually([&] { return servers_[radio]->ask("m") != before; })) << before;
    EXPECT_TRUE(eventually([&] { return panel_->text(id::ModEvent) == servers_[radio]->ask("m"); }))
        << panel_->text(id::ModEvent);
  }
  bool says(int radio, const std::string& words) {
    panel_->clickTab(radio);
    return eventually([&] { return panel_->text(id::RxMask) == words; }, 20000);
  }

  const Instance instance_{L"TestEight"};
  std::array<std::unique_ptr<RealRigctld>, kServedRadios> servers_;
  std::unique_ptr<RunningPanel> panel_;
};

TEST_F(EightRadios, GoOnWhileOneServerIsKilledAndOneStoppedWhichHealAfterwards) {
  for (int radio = 0; radio < kServedRadios; ++radio) tune(radio, 7010 + radio);
  changeMode(kServedRadios - 1);
  servers_[kKilled]->signal("KILL");
  servers_[kStopped]->signal("STOP");
  EXPECT_TRUE(says(kKilled, "Link: Cannot open")) << panel_->text(id::RxMask);
  EXPECT_TRUE(says(kStopped, "Rx: Not responding")) << panel_->text(id::RxMask);
  for (int radio = 0; radio < kServedRadios; ++radio) {
    if (radio != kKilled && radio != kStopped) tune(radio, 14010 + radio);
  }
  ASSERT_TRUE(servers_[kKilled]->start());
  servers_[kStopped]->signal("KILL");
  ASSERT_TRUE(servers_[kStopped]->start());
  tune(kKilled, 3510);
  tune(kStopped, 3520);
  changeMode(kStopped);
  panel_->close();
  EXPECT_EQ(panel_->ended(), 0);
}

/// Ends every process of the program's own server; answers whether there was one.
bool killServers() {
  bool any = false;
  const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W process{};
  process.dwSize = sizeof process;
  for (BOOL more = Process32FirstW(list, &process); more; more = Process32NextW(list, &process)) {
    if (std::wstring(process.szExeFile) != L"RadioServer.exe") continue;
    const HANDLE server = OpenProcess(PROCESS_TERMINATE, FALSE, process.th32ProcessID);
    any = TerminateProcess(server, 9) || any;
    CloseHandle(server);
  }
  CloseHandle(list);
  return any;
}

TEST(OwnServer, IsStartedWithTheProgramStartedAgainWhenItDiesAndEndsWithIt) {
  const int port = freePort();
  const Instance instance(L"TestOwnServer");
  instance.writeReceivers("Version=1\r\n" + section(0, port) + "Command=\"" +
                          (programFolder() / L"RadioServer.exe").string() + "\" " +
                          std::to_string(port) + "\r\n");
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  panel.type("3500\r");
  EXPECT_TRUE(eventually([&] { return panel.digits().find("3500000") != std::string::npos; }));
  ASSERT_TRUE(killServers());
  EXPECT_TRUE(eventually([&] { return panel.digits().find("7100000") != std::string::npos; }))
      << "the frequency that a new one begins with: " << panel.digits();
  ASSERT_TRUE(panel.settledOn(0));
  panel.close();
  EXPECT_EQ(panel.ended(), 0);
  EXPECT_FALSE(killServers()) << "it is gone with the program";
}

/// The dialog of the drivers, opened by the operator's keys.
OpenDialog openDrivers(RunningPanel& panel) {
  PostMessageW(panel.control(id::ConfigButton), BM_CLICK, 0, 0);
  const OpenDialog options(panel, L"KelvaneConfig");
  options.key(panel, VK_TAB, 2);
  return {panel, L"KelvaneDrivers"};
}

TEST(DriversTest, SaysWhatAnsweredWithoutHoldingTheDialog) {
  const int port = freePort();
  RealRigctld server(port);
  ASSERT_TRUE(server.start());
  const Instance instance(L"TestTest");
  instance.writeReceivers("Version=1\r\n[Receiver]\r\nName=Made up\r\n" + section(1, port) +
                          section(2, freePort()));
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  const OpenDialog drivers = openDrivers(panel);
  ASSERT_TRUE(drivers.isOpen());
  EXPECT_FALSE(IsWindowEnabled(drivers.item(rx::Test))) << "there is nothing to try out";
  const auto select = [&](WORD key) {
    SetFocus(drivers.item(rx::Receivers));
    PostMessageW(drivers.item(rx::Receivers), WM_KEYDOWN, key, 0);
  };
  const auto found = [&](const std::string& part) {
    return eventually([&] { return drivers.text(rx::Found).find(part) != std::string::npos; });
  };
  select(VK_DOWN);
  ASSERT_TRUE(eventually([&] { return IsWindowEnabled(drivers.item(rx::Test)) != 0; }));
  drivers.press(rx::Test);
  EXPECT_TRUE(found("Its link is up.")) << drivers.text(rx::Found);
  EXPECT_TRUE(found("Hamlib Dummy"));
  EXPECT_TRUE(found("Has: telling its frequency"));
  select(VK_DOWN);
  EXPECT_TRUE(eventually([&] { return drivers.text(rx::Found).empty(); }))
      << "what was found belongs to another one";
  drivers.press(rx::Test);
  EXPECT_TRUE(found("Nobody listens at 127.0.0.1")) << drivers.text(rx::Found);
  select(VK_UP);
  server.signal("STOP");
  ASSERT_TRUE(eventually([&] { return drivers.text(rx::Found).empty(); }));
  // Until its silence is noticed the program answers from the link that is up.
  constexpr int kLink = 2;
  ASSERT_TRUE(eventually(
      [&] { return drivers.cell(rx::Receivers, 1, kLink) == "Rx: Not responding"; }, 20000))
      << drivers.cell(rx::Receivers, 1, kLink);
  drivers.press(rx::Test);
  DWORD_PTR answer = 0;
  EXPECT_NE(SendMessageTimeoutW(drivers.window(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 500, &answer),
            0);
  EXPECT_TRUE(found("does not answer")) << drivers.text(rx::Found);
  drivers.press(IDCANCEL);
  EXPECT_TRUE(drivers.gone());
  server.signal("CONT");
}

}  // namespace
}  // namespace kelvane::wine
