#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/tcp_client.h"
#include "benchmarks/latencies.h"
#include "components/sondrel/rigctld/rigctld_session.h"

// Tuning a real radio server through a session, from the request to the report of its answer,
// against a bare socket that sends the same lines to the same server and waits for the same bytes.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
using namespace kelvane::sondrel;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 300;

double microseconds(Clock::duration span) {
  return std::chrono::duration<double, std::micro>(span).count();
}

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int freePort() {
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  const int probe = socket(AF_INET, SOCK_STREAM, 0);
  const bool bound = bind(probe, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                     getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  close(probe);
  must(bound, "finding a free port");
  return ntohs(address.sin_port);
}

/// A blocking connection and nothing around it.
class BareSocket {
 public:
  explicit BareSocket(int port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    const sockaddr_in address = loopback(port);
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    connected_ = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  BareSocket(const BareSocket&) = delete;
  BareSocket& operator=(const BareSocket&) = delete;
  ~BareSocket() { close(socket_); }

  bool connected() const { return connected_; }
  /// Sends a line and waits for so many bytes.
  void exchange(const std::string& line, std::size_t bytes) const {
    must(send(socket_, line.data(), line.size(), 0) == static_cast<ssize_t>(line.size()),
         "sending " + line);
    char reply[4096];
    for (std::size_t got = 0; got < bytes;) {
      const ssize_t count = recv(socket_, reply, sizeof reply, 0);
      must(count > 0, "an answer to " + line);
      got += static_cast<std::size_t>(count);
    }
  }

 private:
  int socket_;
  bool connected_ = false;
};

/// A real server with its dummy radio, on loopback; ended with this.
class Server {
 public:
  Server() : port_(freePort()), process_(fork()) {
    if (process_ == 0) {
      const int nowhere = open("/dev/null", O_RDWR);
      for (int stream = 0; stream < 3; ++stream) dup2(nowhere, stream);
      execlp("rigctld", "rigctld", "-m", "1", "-T", "127.0.0.1", "-t",
             std::to_string(port_).c_str(), nullptr);
      _exit(127);
    }
    for (int i = 0; i < 100 && !BareSocket(port_).connected(); ++i) usleep(50'000);
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
  }
  int port() const { return port_; }

 private:
  int port_;
  pid_t process_;
};

/// A line that the session sent, and how many bytes came back before it was content.
struct Exchange {
  std::string line;
  std::size_t bytes = 0;
};

/// A session with its connection, on this thread.
class Link {
 public:
  explicit Link(int port) : session_(quiet()) {
    client_.open("127.0.0.1", port, Clock::now());
    session_.open(false, Clock::now());
    must(runUntil([this] { return up_; }), "a link to the radio server");
    // The radio's first values are read once.
    runUntil([this, end = Clock::now() + milliseconds(1500)] { return Clock::now() > end; });
  }

  /// Tunes and waits until the session tells what came of it; answers the time.
  double tune(std::int32_t hertz) {
    answered_.reset();
    exchanges_.clear();
    const auto start = Clock::now();
    session_.request({RigItem::Frequency, hertz, {}, ++ticket_}, start);
    must(runUntil([this] { return answered_.has_value(); }), "a report of the tuning");
    const auto end = Clock::now();
    must(*answered_ == hertz, "the radio being tuned to " + std::to_string(hertz));
    return microseconds(end - start);
  }
  const std::vector<Exchange>& exchanges() const { return exchanges_; }
  /// Lets a poll that is under way end.
  void rest() {
    runUntil([this, end = Clock::now() + milliseconds(1)] { return Clock::now() > end; });
  }

 private:
  static RigctldOptions quiet() {
    RigctldOptions options;
    // Polls would take part of the line's time.
    options.rates.pace = 0.01;
    return options;
  }

  template <class Done>
  bool runUntil(Done done) {
    const auto end = Clock::now() + std::chrono::seconds(10);
    for (;;) {
      send();
      hear();
      if (done()) return true;
      if (Clock::now() > end) return false;
      feed(
          client_.wait(Clock::now(), std::min(session_.nextDue(), Clock::now() + milliseconds(1))));
    }
  }

  void send() {
    std::string line = session_.takeOutput();
    if (line.empty()) return;
    client_.send(line);
    exchanges_.push_back({std::move(line)});
  }

  void hear() {
    for (const RigReport& report : session_.takeReports()) {
      if (const auto* link = std::get_if<LinkReport>(&report))
        up_ = up_ || link->state == LinkState::Up;
      const auto* value = std::get_if<ValueReport>(&report);
      if (value && value->ticket == ticket_ && !value->refused) answered_ = value->number;
    }
  }

  void feed(const TcpClient::Events& events) {
    const auto now = Clock::now();
    must(!events.failed, "a connection that lasts");
    if (events.opened) session_.connected(now);
    if (!events.received.empty()) {
      if (!exchanges_.empty()) exchanges_.back().bytes += events.received.size();
      session_.received(events.received, now);
    }
    if (now >= session_.nextDue()) session_.tick(now);
  }

  RigctldSession session_;
  TcpClient client_;
  std::uint32_t ticket_ = 0;
  bool up_ = false;
  std::optional<std::int32_t> answered_;
  std::vector<Exchange> exchanges_;
};

double bareTime(const BareSocket& bare, const std::vector<Exchange>& exchanges) {
  const auto start = Clock::now();
  for (const Exchange& exchange : exchanges) bare.exchange(exchange.line, exchange.bytes);
  return microseconds(Clock::now() - start);
}

void measureTuning() {
  const Server server;
  Link link(server.port());
  const BareSocket bare(server.port());
  must(bare.connected(), "a second connection to the radio server");
  Latencies own, plain;
  std::size_t lines = 0;
  for (int i = 0; i < kRounds; ++i) {
    const double time = link.tune(7'000'000 + i);
    const auto exchanges = link.exchanges();
    link.rest();
    plain.add(bareTime(bare, exchanges));
    own.add(time);
    lines += exchanges.size();
  }
  must(lines >= kRounds, "commands that were sent");
  const std::string perRequest = shortNumber(static_cast<double>(lines) / kRounds);
  print({"tuning a rigctld, median", own.median(), "us",
         "bare socket, same " + perRequest + " commands", plain.median(), 1.2});
  print({"tuning a rigctld, 99.9th percentile", own.part(0.999), "us", "bare socket",
         plain.part(0.999)});
}

}  // namespace

int main() { return measure(measureTuning); }
