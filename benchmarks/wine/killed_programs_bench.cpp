#include <algorithm>
#include <random>
#include <stdexcept>

#include "benchmarks/table.h"
#include "tests/wine/killed_programs.h"

// Two Windows processes write channels, receivers, log, lists and settings of one instance, and are
// killed at random.

namespace {

using namespace kelvane;

constexpr int kKills = 1000, kLookEvery = 100;

}  // namespace

int main() {
  return bench::measure([] {
    wine::KilledPrograms programs("BenchKilled");
    std::mt19937 random(1);
    fakes::WrittenFiles::Found worst;
    for (int kill = 1; kill <= kKills; ++kill) {
      if (!programs.kill(3 + random() % 60)) throw std::runtime_error("a process ended by itself");
      if (kill % kLookEvery != 0) continue;
      const auto found = programs.look();
      worst.lost = std::max(worst.lost, found.lost);
      worst.torn = std::max(worst.torn, found.torn);
    }
    const std::string kills = std::to_string(kKills) + " kills, of two Windows processes, ";
    const std::string against = "writes that were told of";
    const auto written = static_cast<double>(programs.written());
    bench::print({kills + "lost", static_cast<double>(worst.lost), "", against, written, 1e-9});
    bench::print({kills + "torn", static_cast<double>(worst.torn), "", against, written, 1e-9});
  });
}
