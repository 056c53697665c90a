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

/// A server that knows nothing and has the same programs: what the system's own calls take. It is a
/// process of its own, this program again.
class BareServer {
 public:
  explicit BareServer(int port) {
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring line = L'"' + std::wstring(self) + L"\" bare " + std::to_wstring(port);
    STARTUPINFOW how{};
    how.cb = sizeof how;
    must(CreateProcessW(self, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &how,
                        &process_) != 0,
         "a bare server");
    Sleep(1000);
  }
  ~BareServer() {
    TerminateProcess(process_.hProcess, 0);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }
  BareServer(const BareServer&) = delete;
  BareServer& operator=(const BareServer&) = delete;

  /// Serves for ever: whoever asks gets back what he sent.
  static void serve(int port) {
    WSADATA ignored;
    WSAStartup(MAKEWORD(2, 2), &ignored);
    const SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    must(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
             listen(listener, SOMAXCONN) == 0,
         "a bare server's port");
    std::vector<WSAPOLLFD> watched{{listener, POLLRDNORM, 0}};
    while (WSAPoll(watched.data(), static_cast<ULONG>(watched.size()), -1) > 0) {
      for (std::size_t i = watched.size(); i-- > 1;) {
        char bytes[200];
        if (watched[i].revents == 0) continue;
        const int size = recv(watched[i].fd, bytes, sizeof bytes, 0);
        if (size > 0) send(watched[i].fd, bytes, size, 0);
        if (size <= 0) watched.erase(watched.begin() + static_cast<std::ptrdiff_t>(i));
      }
      if (watched[0].revents != 0) {
        const SOCKET client = accept(listener, nullptr, nullptr);
        const int on = 1;
        setsockopt(client, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
        watched.push_back({client, POLLRDNORM, 0});
      }
    }
  }

 private:
  PROCESS_INFORMATION process_{};
};

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
    lines_ = joined(ports_);
    const double programs = kReceivers * kPrograms;
    print({"memory for a program that shares",
           (accounts_->memory().made - memory) * 1024 / programs, "KB", "the most it should be", 64,
           1});
    double rate = 0;
    const double busy = share([&] { rate = poll(lines_, kSeconds); });
    constexpr double kWanted = kReceivers * kPrograms * kPolls;
    print({"128 programs: the polls that they get answered", rate, "a second", "those wanted",
           kWanted});
    const double ours = std::max(busy - alone, 0.0) * kWanted / rate;
    print({"128 programs, for 1280 polls a second: the panel's processor time above none", ours,
           "% of a core", "the most it should be", 10, 1});
    print({"the same", ours, "% of a core", "a bare server", costOfBare() * kWanted});
    std::thread programsPoll([this] { poll(lines_, 2 * kSeconds); });
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
  static std::vector<std::unique_ptr<Line>> joined(const std::array<int, kReceivers>& ports) {
    std::vector<std::unique_ptr<Line>> lines;
    for (int i = 0; i < kPrograms; ++i) {
      for (const int port : ports) lines.push_back(std::make_unique<Line>(port));
    }
    for (const auto& line : lines) line->send("f\n");
    for (const auto& line : lines) line->receive();
    return lines;
  }
  /// Of a bare server with as many programs, for one poll a second.
  double costOfBare() const {
    const int port = wine::freePort();
    const BareServer server(port);
    std::array<int, kReceivers> ports;
    ports.fill(port);
    const auto accounts = ProcessAccounts::ofCommand("sharing_bench.exe", "bare");
    const auto lines = joined(ports);
    const double before = accounts.seconds();
    const double rate = poll(lines, kSeconds);
    return 100 * (accounts.seconds() - before) / kSeconds / rate;
  }
  /// Each program asks ten times a second; one of sixteen asks at the same moment. Answers how many
  /// were answered a second, fewer where the computer is too busy for all.
  static double poll(const std::vector<std::unique_ptr<Line>>& lines, int seconds) {
    const LONG64 start = counter();
    const int rounds = seconds * kPolls * kPrograms;
    for (int round = 0; round < rounds; ++round) {
      const double due = 1e6 * round / (kPolls * kPrograms);
      const double early = due - microseconds(counter() - start);
      if (early > 1000) Sleep(static_cast<DWORD>(early / 1000));
      const std::size_t first = static_cast<std::size_t>(round % kPrograms) * kReceivers;
      for (std::size_t i = first; i < first + kReceivers; ++i) lines[i]->send("f\n");
      for (std::size_t i = first; i < first + kReceivers; ++i) lines[i]->receive();
    }
    return 1e6 * rounds * kReceivers / microseconds(counter() - start);
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

int main(int count, char** words) {
  return measure([&] {
    if (count == 3) return BareServer::serve(std::stoi(words[2]));
    Program program;
    program.printAnswer();
    program.printCost();
  });
}
