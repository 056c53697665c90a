#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>

#include "benchmarks/latencies.h"
#include "tests/fakes/fake_rig.h"
#include "tests/fakes/real_rigctld.h"
#include "tests/fakes/recording_listener.h"
#include "tests/fakes/sondrel_rig.h"
#include "tests/fakes/stand_in_server.h"

// The receiver component with its threads and sockets, without the panel: how soon the hand's
// command leaves, how soon a lost link is told, and what eight real radio servers at once cost.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
using namespace kelvane::sondrel;
using fakes::RealRigctld;
using fakes::StandInServer;
using Clock = std::chrono::steady_clock;

double milli(Clock::duration span) {
  return std::chrono::duration<double, std::milli>(span).count();
}

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) { return time.tv_sec + time.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// The component, woken as its host wakes it.
class Host {
 public:
  explicit Host(const std::vector<int>& ports) {
    std::string sections = "Version=1\r\n";
    for (const int port : ports)
      sections += "[Receiver]\r\nKind=rigctld\r\nPort=" + std::to_string(port) + "\r\n";
    writeFileSafely(folder_.path() / "Kelvane" / "receivers.txt", sections);
    core_.addListener(listener_);
    must(core_.OpenRxConfig("Kelvane", 0).value() == static_cast<Count>(ports.size()),
         "receivers that are configured");
    for (std::size_t i = 0; i < ports.size(); ++i) {
      must(until([&] { return core_.IsRxOnline(static_cast<Index>(i)).value() != 0; }),
           "a link to a radio server");
    }
  }

  /// Runs the component until something is so; false after ten seconds.
  template <class So>
  bool until(So so) {
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (!so()) {
      if (Clock::now() > end) return false;
      pump(Clock::now() + milliseconds(20));
    }
    return true;
  }
  void run(milliseconds time) {
    for (const auto end = Clock::now() + time; Clock::now() < end;) pump(end);
  }
  SondrelCore& core() { return core_; }
  fakes::RecordingListener& listener() { return listener_; }

 private:
  void pump(Instant latest) {
    core_.tick(Clock::now());
    core_.deliverEvents();
    std::unique_lock lock(mutex_);
    wakes_.wait_until(lock, std::min(latest, core_.nextDue()), [&] { return woken_; });
    woken_ = false;
  }
  void wake() {
    const std::lock_guard lock(mutex_);
    woken_ = true;
    wakes_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable wakes_;
  bool woken_ = false;
  fakes::TempFolder folder_;
  fakes::FakeSondrelWindows windows_;
  SondrelCore core_{folder_.path(), [] { return Clock::now(); }, [this] { wake(); }, windows_};
  fakes::RecordingListener listener_{&core_};
};

void measureClicks() {
  std::mutex mutex;
  Instant arrived{};
  StandInServer server([&](StandInServer::Connection& connection) {
    fakes::FakeRig rig(fakes::FakeRig::Manner::Rigctld);
    while (const auto line = connection.line()) {
      if (line->starts_with("+F ")) {
        const std::lock_guard lock(mutex);
        arrived = Clock::now();
      }
      connection.write(rig.answer(*line));
    }
  });
  Host host({server.port()});
  host.run(milliseconds(1000));
  Latencies times;
  for (int i = 0; i < 500; ++i) {
    const Instant clicked = Clock::now();
    host.core().SetRxFrequency(0, false, 7'000'000 + i);
    const bool came = host.until([&] {
      const std::lock_guard lock(mutex);
      return arrived > clicked;
    });
    must(came, "a command that reaches the server");
    times.add(milli(arrived - clicked));
    host.run(milliseconds(7));
  }
  print({"click to the server's socket, median", times.median(), "ms", "the most it should be", 1,
         1});
  print({"click to the server's socket, worst of 500", times.worst(), "ms", "the most it should be",
         1, 1});
}

void measureLosses() {
  Latencies lost, back;
  RealRigctld server;
  Host host({server.port()});
  for (int i = 0; i < 10; ++i) {
    const auto told = [&] { return host.listener().count("RxConnState") > 0; };
    const auto online = [&] { return host.core().IsRxOnline(0).value() != 0; };
    host.run(milliseconds(300));
    host.listener().clear();
    auto start = Clock::now();
    server.kill();
    must(host.until(told), "a lost link that is told");
    lost.add(milli(Clock::now() - start));
    server.start();
    host.listener().clear();
    start = Clock::now();
    host.core().SetRxConnect(0, true);
    must(host.until(online), "a link that comes back");
    back.add(milli(Clock::now() - start));
  }
  print({"server killed to the event that tells, worst of 10", lost.worst(), "ms",
         "the most it should be", 1000, 1});
  print({"retry to link up, worst of 10", back.worst(), "ms", "the most it should be", 1000, 1});
}

void measureStop() {
  StandInServer silent([](StandInServer::Connection& connection) {
    fakes::FakeRig rig(fakes::FakeRig::Manner::Rigctld);
    int answers = 0;
    while (const auto line = connection.line()) {
      if (++answers < 30) connection.write(rig.answer(*line));
    }
  });
  auto host = std::make_unique<Host>(std::vector<int>(8, silent.port()));
  host->run(milliseconds(1500));
  const auto start = Clock::now();
  host.reset();
  print({"eight links ended while their server hangs", milli(Clock::now() - start), "ms",
         "the most it should be", 200, 1});
}

/// The rate at which each receiver's S-meter was read, a second; the shown one first.
std::vector<double> meterRates(Host& host, double seconds) {
  std::vector<double> counts(kMostReceivers);
  for (const auto& line : host.listener().lines("RxSMtUpdated"))
    ++counts[static_cast<std::size_t>(std::stoi(line.substr(line.find(' '))))];
  for (double& count : counts) count /= seconds;
  return counts;
}

void measureEight() {
  std::vector<std::unique_ptr<RealRigctld>> servers;
  std::vector<int> ports;
  for (int i = 0; i < kMostReceivers; ++i) {
    servers.push_back(std::make_unique<RealRigctld>());
    ports.push_back(servers.back()->port());
  }
  Host host(ports);
  host.core().SetRxShown(0);
  host.run(milliseconds(3000));
  host.listener().clear();
  constexpr double kSeconds = 10;
  const double before = processorSeconds();
  host.run(milliseconds(static_cast<int>(kSeconds * 1000)));
  const double share = 100 * (processorSeconds() - before) / kSeconds;
  const auto rates = meterRates(host, kSeconds);
  const double others = *std::min_element(rates.begin() + 1, rates.end());
  print({"eight rigctld: time between S-meter readings, shown", 1000 / rates[0], "ms",
         "the most it should be", 50, 1});
  print({"eight rigctld: the same, slowest of the others", 1000 / others, "ms",
         "the most it should be", 200, 1});
  print({"eight rigctld: the component's threads", share, "% of a core", "the most it should be",
         10, 1});
}

}  // namespace

int main() {
  return measure([] {
    measureClicks();
    measureLosses();
    measureStop();
    measureEight();
  });
}
