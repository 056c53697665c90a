#include <algorithm>
#include <random>

#include "benchmarks/table.h"
#include "tests/fakes/killed_writers.h"

// Two processes write channels, receivers, log and lists of one instance, and are killed at random.

namespace {

using namespace kelvane;

constexpr int kKills = 1000, kLookEvery = 50;

}  // namespace

int main() {
  return bench::measure([] {
    fakes::KilledWriters writers;
    std::mt19937 random(1);
    fakes::WrittenFiles::Found worst;
    for (int kill = 1; kill <= kKills; ++kill) {
      writers.kill(milliseconds(3 + random() % 60));
      if (kill % kLookEvery != 0) continue;
      const auto found = writers.look();
      worst.lost = std::max(worst.lost, found.lost);
      worst.torn = std::max(worst.torn, found.torn);
    }
    const std::string kills = std::to_string(kKills) + " kills, of two processes that write, ";
    const std::string against = "writes that were told of";
    const auto written = static_cast<double>(writers.written());
    bench::print({kills + "lost", static_cast<double>(worst.lost), "", against, written, 1e-9});
    bench::print({kills + "torn", static_cast<double>(worst.torn), "", against, written, 1e-9});
  });
}
