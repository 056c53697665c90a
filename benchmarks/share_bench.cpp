#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/latencies.h"
#include "components/sondrel/sharing/share_server.h"
#include "tests/fakes/real_rigctld.h"
#include "tests/fakes/share_play.h"
#include "tests/fakes/sharing_program.h"

// A program at a shared receiver, against the same program at a real rigctld with its dummy radio.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
using namespace kelvane::sondrel;
using fakes::SharingProgram;
using Clock = std::chrono::steady_clock;

constexpr int kAsked = 2000;
constexpr int kRows = 20;

double microseconds(Clock::duration span) {
  return std::chrono::duration<double, std::micro>(span).count();
}

/// One receiver served on a port of its own, without a radio behind it.
class Served {
 public:
  Served() {
    const auto receiver = std::make_shared<SharedReceiver>();
    const fakes::SharePlay play;
    SharedFacts facts = play.facts;
    receiver->publish(std::move(facts));
    server_.serve({{"Attic", receiver, {}, {}, 0, 14532}});
    for (int i = 0; i < 1000 && port() == 0; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    must(port() != 0, "serving a receiver");
  }
  int port() const {
    const auto views = server_.views();
    const auto colon = views.empty() ? std::string::npos : views[0].address.rfind(':');
    return colon == std::string::npos ? 0 : std::stoi(views[0].address.substr(colon + 1));
  }

 private:
  ShareServer server_{{[](const std::string&) {}, [] {}}};
};

double medianOfOne(int port) {
  SharingProgram program(port);
  must(program.connected() && !program.ask("f").empty(), "an answer to f");
  Latencies times;
  for (int i = 0; i < kAsked; ++i) {
    const auto start = Clock::now();
    must(!program.ask("f").empty(), "an answer to f");
    times.add(microseconds(Clock::now() - start));
  }
  return times.median();
}

double medianOfHundred(int port) {
  SharingProgram program(port);
  std::string row;
  for (int i = 0; i < 100; ++i) row += "f\n";
  Latencies times;
  for (int i = 0; i < kRows; ++i) {
    const auto start = Clock::now();
    must(program.send(row), "sending a row");
    for (std::ptrdiff_t lines = 0; lines < 100;) {
      const std::string part = program.receive();
      must(!part.empty(), "the answers to a row");
      lines += std::count(part.begin(), part.end(), '\n');
    }
    times.add(microseconds(Clock::now() - start));
  }
  return times.median();
}

/// What this process has in memory, KB.
double resident() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stod(line.substr(6));
  }
  return 0;
}

void printMemory(int port) {
  constexpr int kPrograms = 190;
  std::vector<std::unique_ptr<SharingProgram>> programs;
  const double before = resident();
  for (int i = 0; i < kPrograms; ++i) {
    programs.push_back(std::make_unique<SharingProgram>(port));
    must(!programs.back()->ask("\\dump_state").empty(), "an answer");
  }
  print({"memory for a program at a shared receiver", (resident() - before) / kPrograms, "KB",
         "the most it should be", 64, 1});
}

/// Processor time of all threads of this process but the calling one, in seconds.
double secondsOfOthers() {
  const auto of = [](int who) {
    rusage used{};
    getrusage(who, &used);
    const auto seconds = [](const timeval& time) { return time.tv_sec + time.tv_usec / 1e6; };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
  };
  return of(RUSAGE_SELF) - of(RUSAGE_THREAD);
}

/// 128 programs that ask ten times a second each, one of sixteen at the same moment.
void printCost(int port) {
  constexpr int kPrograms = 128, kGroups = 16, kRounds = 5 * 10 * kGroups;
  constexpr std::chrono::microseconds kPause{1'000'000 / 10 / kGroups};
  std::vector<std::unique_ptr<SharingProgram>> programs;
  for (int i = 0; i < kPrograms; ++i) {
    programs.push_back(std::make_unique<SharingProgram>(port));
    must(!programs.back()->ask("f").empty(), "an answer");
  }
  const double before = secondsOfOthers();
  const auto start = Clock::now();
  for (int round = 0; round < kRounds; ++round) {
    std::this_thread::sleep_until(start + round * kPause);
    for (int i = round % kGroups; i < kPrograms; i += kGroups) {
      must(programs[i]->send("f\n"), "a question sent");
    }
    for (int i = round % kGroups; i < kPrograms; i += kGroups) {
      must(!programs[i]->receive().empty(), "an answer");
    }
  }
  const double wall = microseconds(Clock::now() - start) / 1e6;
  print({"128 programs, 1280 polls a second, natively", 100 * (secondsOfOthers() - before) / wall,
         "% of a core", "the most it should be", 10, 1});
}

void run() {
  const Served served;
  printMemory(served.port());
  printCost(served.port());
  const fakes::RealRigctld rigctld;
  print({"f of a shared receiver, one by one, median", medianOfOne(served.port()), "us",
         "rigctld -m 1", medianOfOne(rigctld.port()), 1.0});
  print({"100 commands in one packet, median", medianOfHundred(served.port()), "us", "rigctld -m 1",
         medianOfHundred(rigctld.port()), 0.1});
}

}  // namespace

int main() { return measure(run); }
