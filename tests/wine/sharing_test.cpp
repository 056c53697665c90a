#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "components/sondrel/win32/dialog_ids.h"
#include "tests/wine/instance.h"
#include "tests/wine/open_dialog.h"
#include "tests/wine/real_rigctld.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace rx = sondrel::id;

/// What lies on the clipboard as text; "" where there is none.
std::string copiedText() {
  if (OpenClipboard(nullptr) == 0) return {};
  const auto* text = static_cast<const wchar_t*>(GetClipboardData(CF_UNICODETEXT));
  const std::wstring copied = text ? text : L"";
  CloseClipboard();
  return narrow(copied);
}

/// The program with a real radio that other programs may tune.
class Sharing : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(radio.start());
    instance.writeReceivers("Version=1\r\n[Receiver]\r\nName=Attic\r\nKind=rigctld\r\nPort=" +
                            std::to_string(radioPort) +
                            "\r\nShare=tune\r\nSharePort=" + std::to_string(port) + "\r\n");
    panel = std::make_unique<RunningPanel>(instance.name());
    ASSERT_TRUE(panel->settledOn(0));
    panel->type("7050\r");
    ASSERT_TRUE(shows("7050000"));
  }
  bool shows(const std::string& hertz) const {
    return eventually([&] { return panel->digits().find(hertz) != std::string::npos; });
  }

  const int radioPort = freePort();
  const int port = freePort();
  RealRigctld radio{radioPort};
  const Instance instance{L"TestSharing"};
  std::unique_ptr<RunningPanel> panel;
};

TEST_F(Sharing, ServesGenuineClientsAndHoldsThemWhileItsRadioIsGone) {
  const std::string client = "rigctl -m 2 -r 127.0.0.1:" + std::to_string(port) + " ";
  EXPECT_EQ(hostOutput(client + "f"), "7050000\n");
  EXPECT_EQ(hostOutput(client + "F 14100000 f"), "14100000\n");
  EXPECT_TRUE(shows("14100000")) << panel->digits();
  EXPECT_EQ(radio.ask("f"), "14100000");
  const int chainPort = freePort();
  RealRigctld server(chainPort, "-m 2 -r 127.0.0.1:" + std::to_string(port));
  ASSERT_TRUE(server.start());
  // It closes its radio as its last client goes, and ends whoever comes in that moment: one stays.
  std::unique_ptr<LineClient> stays;
  ASSERT_TRUE(eventually([&] {
    stays = std::make_unique<LineClient>(chainPort);
    return stays->ask("f") == "14100000";
  }));
  const LineClient& chain = *stays;
  EXPECT_EQ(chain.ask("M CW 500"), "RPRT 0");
  EXPECT_TRUE(eventually([&] { return panel->text(id::ModEvent) == "CW"; }));
  panel->type("3500\r");
  EXPECT_TRUE(eventually([&] { return chain.ask("f") == "3500000"; })) << chain.ask("f");

  const LineClient program(port);
  ASSERT_EQ(program.ask("f"), "3500000");
  radio.signal("KILL");
  const auto held = [&] { return panel->text(id::RxMask).starts_with("Held for 2 programs, "); };
  EXPECT_TRUE(eventually(held)) << panel->text(id::RxMask);
  EXPECT_EQ(program.ask("f"), "3500000");
  EXPECT_EQ(chain.ask("f"), "3500000");
  EXPECT_EQ(program.ask("F 7000000"), "RPRT -5");
  ASSERT_TRUE(radio.start());
  EXPECT_TRUE(eventually([&] { return program.ask("F 7060000") == "RPRT 0"; }, 20000));
  EXPECT_TRUE(shows("7060000")) << panel->digits();
  EXPECT_TRUE(eventually([&] { return chain.ask("f") == "7060000"; })) << chain.ask("f");
  panel->close();
  EXPECT_EQ(panel->ended(), 0) << "also with programs connected";
}

TEST_F(Sharing, ServesACrowdAndThoseWhoStayOfIt) {
  std::vector<std::unique_ptr<LineClient>> crowd;
  for (int i = 0; i < 40; ++i) {
    crowd.push_back(std::make_unique<LineClient>(port));
    ASSERT_EQ(crowd.back()->ask("f"), "7050000") << "program " << i;
  }
  const auto allAnswered = [&](const std::string& hertz) {
    return std::ranges::all_of(crowd,
                               [&](const auto& program) { return program->ask("f") == hertz; });
  };
  EXPECT_TRUE(allAnswered("7050000"));
  EXPECT_EQ(crowd.front()->ask("F 7060000"), "RPRT 0");
  EXPECT_TRUE(eventually([&] { return allAnswered("7060000"); }));
  crowd.resize(5);
  EXPECT_EQ(crowd.back()->ask("F 7070000"), "RPRT 0");
  EXPECT_TRUE(eventually([&] { return allAnswered("7070000"); }));
  panel->close();
  EXPECT_EQ(panel->ended(), 0);
}

TEST_F(Sharing, ShowsWhoIsThereAndEndsOneOfThem) {
  const LineClient program(port);
  ASSERT_EQ(program.ask("F 7040000"), "RPRT 0");
  PostMessageW(panel->control(id::ConfigButton), BM_CLICK, 0, 0);
  const OpenDialog options(*panel, L"KelvaneConfig");
  options.key(*panel, VK_TAB, 2);
  const OpenDialog drivers(*panel, L"KelvaneDrivers");
  ASSERT_TRUE(drivers.isOpen());
  const auto programs = [&] { return SendMessageW(drivers.item(rx::Programs), LB_GETCOUNT, 0, 0); };
  EXPECT_TRUE(eventually([&] { return programs() == 1; }));
  const std::string state =
      "Shared at 127.0.0.1:" + std::to_string(port) + ": 1 program. Moved last by 127.0.0.1:";
  EXPECT_TRUE(eventually([&] { return drivers.text(rx::ShareState).starts_with(state); }))
      << drivers.text(rx::ShareState);
  drivers.press(rx::CopyAddress);
  const std::string address = "127.0.0.1:" + std::to_string(port);
  EXPECT_TRUE(eventually([&] { return copiedText() == address; })) << copiedText();
  EXPECT_FALSE(IsWindowEnabled(drivers.item(rx::EndProgram))) << "none is selected";
  SetFocus(drivers.item(rx::Programs));
  PostMessageW(drivers.item(rx::Programs), WM_KEYDOWN, VK_DOWN, 0);
  ASSERT_TRUE(eventually([&] { return IsWindowEnabled(drivers.item(rx::EndProgram)) != 0; }));
  drivers.press(rx::EndProgram);
  EXPECT_TRUE(program.closed());
  EXPECT_TRUE(eventually([&] { return programs() == 0; }));
  drivers.press(IDCANCEL);
  EXPECT_TRUE(drivers.gone());
}

}  // namespace
}  // namespace kelvane::wine
