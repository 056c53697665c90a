#include "base/tcp_client.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/fakes/stand_in_server.h"

namespace kelvane {
namespace {

using fakes::StandInServer;
using Connection = StandInServer::Connection;
using std::chrono::seconds;

Instant clockNow() { return std::chrono::steady_clock::now(); }

/// What a client has seen until something was to be told, or half a minute has passed.
struct Seen {
  bool opened = false;
  std::string received;
  std::optional<NetFailure> failed;
};

Seen watch(TcpClient& client, const std::function<bool(const Seen&)>& enough) {
  Seen seen;
  const auto end = clockNow() + seconds(30);
  while (!enough(seen) && clockNow() < end) {
    const auto events = client.wait(clockNow(), end);
    seen.opened = seen.opened || events.opened;
    seen.received += events.received;
    if (events.failed) seen.failed = events.failed;
  }
  return seen;
}

Seen connectTo(const std::string& host, std::int32_t port) {
  TcpClient client;
  client.open(host, port, clockNow());
  return watch(client, [](const Seen& seen) { return seen.opened || seen.failed; });
}

int unusedPort() { return StandInServer(nullptr).port(); }

TEST(TcpClient, SaysWhyItCannotConnect) {
  for (const std::int32_t port : {0, -1, 65536, 70000, INT32_MAX}) {
    EXPECT_EQ(connectTo("127.0.0.1", port).failed, NetFailure::BadAddress) << port;
  }
  for (const std::string host : {"", "no such host", "nosuch.invalid", "256.1.1.1", "a..b"}) {
    EXPECT_EQ(connectTo(host, 4532).failed, NetFailure::BadAddress) << host;
  }
  const int port = unusedPort();
  EXPECT_EQ(connectTo("127.0.0.1", port).failed, NetFailure::Refused);
  EXPECT_EQ(connectTo("localhost", port).failed, NetFailure::Refused) << "of every address";
}

TEST(TcpClient, GivesUpAnAttemptThatNobodyAnswers) {
  const StandInServer full(nullptr, 0);
  TcpClient first;
  first.open("127.0.0.1", full.port(), clockNow());
  EXPECT_TRUE(watch(first, [](const Seen& seen) { return seen.opened; }).opened);
  EXPECT_EQ(connectTo("127.0.0.1", full.port()).failed, NetFailure::TimedOut);
}

TEST(TcpClient, CarriesBytesBothWaysAndTellsTheEnd) {
  StandInServer echo([](Connection& connection) {
    while (const auto line = connection.line()) {
      if (*line == "reset") return connection.reset();
      if (*line == "end") {
        connection.write("last words");
        return;
      }
      connection.write(*line + "!\n");
    }
  });
  for (const std::string last : {"end", "reset"}) {
    TcpClient client;
    client.open("localhost", echo.port(), clockNow());
    EXPECT_TRUE(watch(client, [](const Seen& seen) { return seen.opened; }).opened);
    client.send("one\n");
    const auto answered = [](const Seen& seen) { return seen.received == "one!\n"; };
    EXPECT_EQ(watch(client, answered).received, "one!\n");
    client.send(last + "\n");
    const auto end = watch(client, [](const Seen& seen) { return seen.failed.has_value(); });
    EXPECT_EQ(end.failed, NetFailure::Ended);
    EXPECT_EQ(end.received, last == "end" ? "last words" : "");
  }
}

TEST(TcpClient, SendsMoreThanTheSystemTakesAtOnce) {
  std::atomic<std::size_t> got = 0;
  StandInServer reader([&](Connection& connection) {
    connection.line();
    got = connection.skipTo('z');
    connection.write("done\n");
  });
  TcpClient client;
  client.open("127.0.0.1", reader.port(), clockNow());
  watch(client, [](const Seen& seen) { return seen.opened; });
  constexpr std::size_t kSize = 6'000'000;
  client.send("now\n" + std::string(kSize - 1, 'x'));
  client.send("z");
  const auto seen = watch(client, [](const Seen& s) { return !s.received.empty() || s.failed; });
  EXPECT_EQ(seen.received, "done\n");
  EXPECT_EQ(got, kSize);
}

TEST(TcpClient, IsWokenFromAnyThread) {
  TcpClient client;
  client.wake();
  client.wait(clockNow(), kNever);  // would wait for ever
  std::thread other([&] { client.wake(); });
  client.wait(clockNow(), kNever);
  other.join();
}

}  // namespace
}  // namespace kelvane
