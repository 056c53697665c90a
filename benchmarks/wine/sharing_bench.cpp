#include <winsock2.h>

#include <windows.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/wine/instance.h"
#include "tests/wine/real_rigctld.h"
#include "tests/wine/running_panel.h"

// The real program with eight receivers that other programs share: how soon one of them is
// answered, against a server that only sends back what it gets, and what sixteen programs at each
// of them cost.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kReceivers = 8;
constexpr int kPrograms = 16;  ///< at each receiver
constexpr int kPolls = 10;     ///< of each program a second
constexpr int kSeconds = 10;
constexpr double kFrame = 16'000;  ///< us

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// A connection on which each question is answered by one line.
class Line {
 public:
  explicit Line(int port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    const sockaddr_in address = loopback(port);
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
    must(connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
         "a connection");
  }
  ~Line() { closesocket(socket_); }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  void send(std::string_view text) const {
    must(::send(socket_, text.data(), static_cast<int>(text.size()), 0) > 0, "a question sent");
  }
  void receive() const {
    char answer[200];
    must(recv(socket_, answer, sizeof answer, 0) > 0, "an answer");
  }

 private:
  SOCKET socket_;
};

/// Sends back what it gets, to one client.
class Echo {
 public:
  explicit Echo(int port) : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    const sockaddr_in address = loopback(port);
    must(bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
             listen(listener_, 1) == 0,
         "an echo server");
    thread_ = std::thread([this] { serve(); });
  }
  ~Echo() {
    thread_.join();
    closesocket(listener_);
  }

 private:
  void serve() const {
    const SOCKET client = accept(listener_, nullptr, nullptr);
    const int on = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
    char bytes[200];
    for (int size; (size = recv(client, bytes, sizeof bytes, 0)) > 0;) send(client, bytes, size, 0);
    closesocket(client);
  }

  SOCKET listener_;
  std::thread thread_;
};

void ask(const Line& line, Latencies& times) {
  for (int i = 0; i < 50; ++i) {
    const LONG64 asked = counter();
    line.send("f\n");
    line.receive();
    times.add(microseconds(counter() - asked));
  }
}

class Program {
 public:
  Program() {
    std::string receivers = "Version=1\r\n";
    for (int i = 0; i < kReceivers; ++i) {
      ports_[i] = wine::freePort();
      receivers += "[Receiver]\r\nName=R" + std::to_string(i) +
                   "\r\nShare=look\r\nSharePort=" + std::to_string(ports_[i]) + "\r\n";
    }
    instance_.writeReceivers(receivers);
    panel_ = std::make_unique<wine::RunningPanel>(instance_.name());
    must(panel_->settledOn(0), "a link that is up");
    Sleep(5000);
    accounts_ = std::make_unique<ProcessAccounts>(
        ProcessAccounts::ofCommand("Kelvane.exe", "BenchSharing"));
  }
  ~Program() {
    panel_->close();
    panel_->ended();
  }

  void printAnswer() const {
    const int port = wine::freePort();
    const Echo echo(port);
    const Line shared(ports_[0]), echoed(port), again(ports_[0]);
    Latencies ofShared, ofEcho, ofSharedAgain;
    // In turns, so that whatever else the computer does slows all of them.
    for (int turn = 0; turn < 60; ++turn) {
      ask(shared, ofShared);
      ask(echoed, ofEcho);
      ask(again, ofSharedAgain);
    }
    print({"f of a shared receiver under Wine, median", ofShared.median(), "us", "an echo server",
           ofEcho.median(), 1.3});
    print({"the same, a second program in turn", ofSharedAgain.median(), "us", "the first",
           ofShared.median()});
  }
  void printCost() {
    const double alone = share([] { Sleep(kSeconds * 1000); });
    const double memory = accounts_->memory().made;
    join();
    const double programs = kReceivers * kPrograms;
    print({"memory for a program that shares",
           (accounts_->memory().made - memory) * 1024 / programs, "KB", "the most it should be", 64,
           1});
    const double busy = share([this] { poll(kSeconds); });
    print({"128 programs, 1280 polls a second: the panel's processor time above none",
           std::max(busy - alone, 0.0), "% of a core", "the most it should be", 10, 1});
    std::thread programsPoll([this] { poll(2 * kSeconds); });
    answers().printRows("window's answer with 1280 polls a second", "us", "a frame", kFrame);
    programsPoll.join();
  }

 private:
  template <class Work>
  double share(Work work) const {
    const LONG64 start = counter();
    const double before = accounts_->seconds();
    work();
    return 100 * (accounts_->seconds() - before) / (microseconds(counter() - start) / 1e6);
  }
  void join() {
    for (int i = 0; i < kPrograms; ++i) {
      for (const int port : ports_) lines_.push_back(std::make_unique<Line>(port));
    }
    for (const auto& line : lines_) line->send("f\n");
    for (const auto& line : lines_) line->receive();
  }
  /// Each program asks ten times a second; one of sixteen asks at the same moment.
  void poll(int seconds) const {
    const LONG64 start = counter();
    const int rounds = seconds * kPolls * kPrograms;
    for (int round = 0; round < rounds; ++round) {
      const double due = 1e6 * round / (kPolls * kPrograms);
      const double early = due - microseconds(counter() - start);
      if (early > 1000) Sleep(static_cast<DWORD>(early / 1000));
      const std::size_t first = static_cast<std::size_t>(round % kPrograms) * kReceivers;
      for (std::size_t i = first; i < first + kReceivers; ++i) lines_[i]->send("f\n");
      for (std::size_t i = first; i < first + kReceivers; ++i) lines_[i]->receive();
    }
    must(microseconds(counter() - start) < 1.1e6 * seconds, "polls at their rate");
  }
  Latencies answers() const {
    Latencies times;
    const ULONGLONG end = GetTickCount64() + 15'000;
    while (GetTickCount64() < end) {
      DWORD_PTR result = 0;
      const LONG64 asked = counter();
      must(SendMessageTimeoutW(panel_->window(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result) != 0,
           "an answer of the window");
      times.add(microseconds(counter() - asked));
      Sleep(4);
    }
    return times;
  }

  const wine::Instance instance_{L"BenchSharing"};
  std::array<int, kReceivers> ports_{};
  std::unique_ptr<wine::RunningPanel> panel_;
  std::unique_ptr<ProcessAccounts> accounts_;
  std::vector<std::unique_ptr<Line>> lines_;
};

}  // namespace

int main() {
  return measure([] {
    Program program;
    program.printAnswer();
    program.printCost();
  });
}
