#include <algorithm>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "base/code_page.h"
#include "base/text.h"
#include "benchmarks/table.h"
#include "companions/channel_tasks.h"
#include "tests/fakes/sondrel_rig.h"

// Import and export of channel files, against a bare read of the same file whose lines are split
// into their fields.

namespace {

using namespace kelvane;

constexpr Channel kChannels = 32'767;

/// Keys that nobody presses.
struct NoKeys : ChannelKeys {
  void getIt() override {}
  void emptyChannel() override {}
  void select(Channel) override {}
  void edited() override {}
};

/// The quickest of some runs, of the processor's time: it waits for nothing but other programs.
double milliseconds(const std::function<void()>& work) {
  double best = 1e9;
  for (int run = 0; run < 7; ++run) {
    const std::clock_t start = std::clock();
    work();
    best = std::min(best, 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best;
}

std::size_t readAndSplit(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::string line;
  std::size_t fields = 0;
  while (std::getline(in, line)) fields += split(line, ';').size();
  return fields;
}

class Bench {
 public:
  Bench() {
    rig_.configure("[Receiver 1]\nName=A\nChannels=0-32766\n");
    rig_.open();
    table_.open(0);
  }

  void run(int lines, const std::string& count) {
    ChannelRows rows;
    for (int i = 0; i < lines; ++i)
      rows.push_back({i % kChannels, ChannelRow{{7'000'000 + i, -50, 2, 2400, 1, i % 2}}});
    const auto path = rig_.folder.path() / "channels.txt";
    const auto exported = [&] {
      std::ofstream(path, std::ios::binary)
          << toCodePage(channelFile(rows, table_.modes(), table_.agc()));
    };
    const auto imported = [&] {
      ImportTask task(path, table_);
      while (task.step()) continue;
      bench::must(!task.failed(), "the import of " + count + " lines");
    };
    const double writing = milliseconds(exported);
    const double bare = milliseconds([&] {
      bench::must(readAndSplit(path) == std::size_t(lines) * 8, "the bare read of every line");
    });
    const double reading = milliseconds(imported);
    const char* against = "bare read and split";
    bench::print({"channel file, import of " + count + " lines", reading, "ms", against, bare, 5});
    bench::print({"channel file, export of " + count + " lines", writing, "ms", against, bare, 5});
  }

 private:
  fakes::SondrelRig rig_;
  NoKeys keys_;
  ChannelTable table_{rig_.core, keys_};
};

}  // namespace

int main() {
  return kelvane::bench::measure([] {
    Bench bench;
    bench.run(1'000, "1,000");
    bench.run(100'000, "100,000");
  });
}
