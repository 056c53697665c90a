#include "win32/dde_servers.h"

#include <gtest/gtest.h>

#include "tests/wine/digit_server.h"

namespace kelvane::win32 {
namespace {

void letEventsRun() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

TEST(DdeServersTest, KeysKeepTheirOrderThoughTakingOneLetsEventsRun) {
  wine::DigitServer server(L"KelvaneOrder_A");
  DdeServers servers;
  std::string taken;
  bool first = true;
  servers.setListener([&](Index, const std::string& text) {
    const bool waits = std::exchange(first, false);
    // Long enough for the next ones to come.
    for (int i = 0; waits && i < 100; ++i, Sleep(10)) letEventsRun();
    taken += text.substr(0, 1);
  });
  servers.link({"KelvaneOrder_A"});
  ASSERT_TRUE(wine::eventually([&] {
    servers.refresh();
    return servers.state(0) == DigitLink::Linked;
  }));
  server.say("123456789#");
  wine::eventually([&] {
    letEventsRun();
    return taken.size() == 10;
  });
  EXPECT_EQ(taken, "123456789#");
}

TEST(DdeServersTest, AServerThatEndedInOrderIsFoundAgain) {
  DdeServers servers;
  servers.link({"KelvaneAgain_A"});
  const auto becomes = [&](DigitLink state) {
    return wine::eventually([&] {
      letEventsRun();
      servers.refresh();
      return servers.state(0) == state;
    });
  };
  std::string taken;
  servers.setListener([&](Index, const std::string& text) { taken += text.substr(0, 1); });
  for (const char key : {'1', '2', '3'}) {
    wine::DigitServer server(L"KelvaneAgain_A");
    ASSERT_TRUE(becomes(DigitLink::Linked)) << key;
    server.say(std::string(1, key));
    EXPECT_TRUE(wine::eventually([&] {
      letEventsRun();
      return taken.ends_with(key);
    })) << taken;
    EXPECT_TRUE(server.end());
    EXPECT_TRUE(becomes(DigitLink::Waiting)) << key;
  }
}

}  // namespace
}  // namespace kelvane::win32
