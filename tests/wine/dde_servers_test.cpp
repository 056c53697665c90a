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
  servers.whenReceived([&](Index, const std::string& text) {
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

}  // namespace
}  // namespace kelvane::win32
