#include <windows.h>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/real_rigctld.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

std::string radio(const std::string& host, int port) {
  return "Version=1\r\n[Receiver]\r\nName=Attic\r\nKind=rigctld\r\nHost=" + host +
         "\r\nPort=" + std::to_string(port) + "\r\n";
}

/// The status box says so; it blinks, and keeps its text while it is not seen.
bool says(const RunningPanel& panel, const std::string& words) {
  return eventually([&] { return panel.text(id::RxMask) == words; }, 30000);
}

TEST(Radio, IsTunedFollowsOtherClientsAndHealsAfterItsServerWasKilled) {
  const int port = freePort();
  RealRigctld radioServer(port);
  ASSERT_TRUE(radioServer.start());
  const Instance instance(L"TestRadio");
  instance.writeReceivers(radio("127.0.0.1", port));
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  panel.type("7050\r");
  EXPECT_TRUE(eventually([&] { return radioServer.ask("f") == "7050000"; }));
  EXPECT_NE(panel.digits().find("7050000"), std::string::npos);
  radioServer.ask("F 14100000");
  EXPECT_TRUE(eventually([&] { return panel.digits().find("14100000") != std::string::npos; }))
      << panel.digits();
  radioServer.ask("M CW 500");
  EXPECT_TRUE(eventually([&] { return panel.text(id::ModEvent) == "CW"; }))
      << panel.text(id::ModEvent);

  radioServer.signal("KILL");
  EXPECT_TRUE(says(panel, "Link: Cannot open")) << panel.text(id::RxMask);
  EXPECT_FALSE(panel.enabled(id::FrqDigit + 5));
  ASSERT_TRUE(radioServer.start());
  EXPECT_TRUE(panel.settledOn(0));
  panel.type("3500\r");
  EXPECT_TRUE(eventually([&] { return radioServer.ask("f") == "3500000"; }));
  panel.close();
  EXPECT_EQ(panel.ended(), 0);
}

TEST(Radio, ThatFallsSilentIsSaidToAndThePanelIsNeverHeld) {
  const int port = freePort();
  RealRigctld server(port);
  ASSERT_TRUE(server.start());
  const Instance instance(L"TestSilent");
  instance.writeReceivers(radio("127.0.0.1", port) + "[Receiver]\r\nName=Beside\r\n");
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.shown());
  ASSERT_TRUE(eventually([&] { return panel.tabs() == 2; }));
  panel.clickTab(0);
  ASSERT_TRUE(panel.settledOn(0));
  server.signal("STOP");
  EXPECT_TRUE(says(panel, "Rx: Not responding")) << panel.text(id::RxMask);
  DWORD_PTR answer = 0;
  EXPECT_NE(SendMessageTimeoutW(panel.window(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 500, &answer), 0);
  panel.clickTab(1);
  ASSERT_TRUE(panel.settledOn(1));
  panel.type("7050\r");
  EXPECT_TRUE(eventually([&] { return panel.digits().find("7050000") != std::string::npos; }));
  server.signal("CONT");
  EXPECT_FALSE(eventually([&] { return panel.selectedTab() != 1; }, 4500))
      << "a link that was up a moment ago takes no display";
  panel.clickTab(0);
  EXPECT_TRUE(panel.settledOn(0)) << "the link heals by itself";
  panel.close();
  EXPECT_EQ(panel.ended(), 0);
}

TEST(Radio, ThatCannotBeReachedSaysWhyInWords) {
  const struct {
    std::string host;
    int port;
    const char* words;
  } rows[] = {{"127.0.0.1", freePort(), "Link: Cannot open"},
              {"no-such-host.invalid", 4532, "Link: Bad address"},
              {"127.0.0.1", 0, "Link: Bad address"},
              {"127.0.0.1", 70000, "Link: Bad address"}};
  for (const auto& row : rows) {
    const Instance instance(L"TestNowhere");
    instance.writeReceivers(radio(row.host, row.port));
    RunningPanel panel(instance.name());
    ASSERT_TRUE(panel.shown());
    EXPECT_TRUE(says(panel, row.words))
        << row.host << ":" << row.port << " " << panel.text(id::RxMask);
    panel.close();
    EXPECT_EQ(panel.ended(), 0);
  }
}

TEST(SimulatedLink, ShowsEveryFaultInItsWordsAndHeals) {
  const std::pair<int, const char*> faults[] = {
      {999, "Rx: Not responding"}, {1002, "Link: No loop"},       {1003, "Link: Timeout"},
      {1004, "Link: Bad address"}, {1005, "Link: Configuration"}, {1006, "Link: Cannot open"},
      {1010, "Link: Error"},       {1022, "Rx: Bad ID"},          {1024, "Rx: Bad Address"},
      {1025, "Rx: BITE Error"}};
  const Instance instance(L"TestFaults");
  std::string receivers = "Version=1\r\n";
  for (int i = 0; i < 8; ++i)
    receivers += "[Receiver]\r\nName=R" + std::to_string(i) +
                 "\r\nFault=" + std::to_string(faults[i].first) + "\r\n";
  instance.writeReceivers(receivers);
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.shown());
  for (int i = 0; i < 8; ++i) {
    panel.clickTab(i);
    EXPECT_TRUE(says(panel, faults[i].second)) << i << " " << panel.text(id::RxMask);
  }
  bool seen[2] = {};
  eventually([&] {
    seen[panel.visible(id::RxMask)] = true;
    return seen[0] && seen[1];
  });
  EXPECT_TRUE(seen[0] && seen[1]) << "the status box blinks";
}

}  // namespace
}  // namespace kelvane::wine
