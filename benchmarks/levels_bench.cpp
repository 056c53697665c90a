// The levels of eight receivers over 24 hours: what their history takes, and how long a picture of
// the traces takes while it is scrolled and zoomed, without putting it on the screen.
#include <chrono>
#include <cmath>
#include <memory>

#include "benchmarks/latencies.h"
#include "overview/trace_lines.h"

namespace kelvane::bench {
namespace {

constexpr LevelTime kFirst = 1'800'000'000'000, kDay = LevelHistory::kKept;
constexpr int kWidth = 1000, kHeight = 400, kFrames = 2000;
constexpr double kFrameTime = 16'000;  // us

using Histories = std::vector<std::unique_ptr<LevelHistory>>;

/// 50 readings a second, of a level that fades.
Histories filled() {
  Histories all;
  for (int rx = 0; rx < kMostReceivers; ++rx) {
    all.push_back(std::make_unique<LevelHistory>());
    for (LevelTime at = 0; at < kDay; at += 20) {
      const auto fading = static_cast<Long>(10 * std::sin(static_cast<double>(at) / 9000 + rx));
      all.back()->add(kFirst + at, -80 + fading + static_cast<Long>(at / 20 % 3));
    }
  }
  return all;
}

void drawFrame(const Histories& all, LevelTime from, LevelTime to, const Pixels& pixels) {
  std::vector<LevelSpan> columns(kWidth);
  const LevelScale scale;
  LineStyle style{0x4CC2FF, 1.5, {9, 4}, 1, 255};
  for (const auto& history : all) {
    history->fill(from, to, columns);
    style.share = 56;
    drawBand(pixels, columns, scale, style);
    style.share = 255;
    drawLine(pixels, columns, scale, style, Through::Mean, 20);
    drawLine(pixels, rolling(columns, 16), scale, style, Through::Greatest, 20);
  }
}

void measureFrames(const Histories& all, const std::string& name, LevelTime span) {
  std::vector<std::uint32_t> data(kWidth * kHeight);
  Latencies times;
  for (int frame = 0; frame < kFrames; ++frame) {
    const LevelTime to = kFirst + kDay - frame % 100 * (kDay - span) / 100;
    const auto begun = std::chrono::steady_clock::now();
    std::ranges::fill(data, 0u);
    drawFrame(all, to - span, to, {data, kWidth, kHeight});
    times.add(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begun)
                  .count());
  }
  must(std::ranges::any_of(data, [](std::uint32_t pixel) { return pixel != 0; }), "a picture");
  times.printRows(name, "us", "a frame", kFrameTime);
}

void run() {
  const Histories all = filled();
  std::size_t size = 0;
  for (const auto& history : all) size += history->size();
  print({"memory of 24 hours of eight receivers", static_cast<double>(size) / 1e6, "MB",
         "each second and the readings of ten minutes",
         static_cast<double>(LevelHistory::kComputedSize) * kMostReceivers / 1e6, 1.1});
  measureFrames(all, "picture of 24 hours of eight receivers", kDay);
  measureFrames(all, "picture of 10 minutes of eight receivers", LevelHistory::kRecent);
}

}  // namespace
}  // namespace kelvane::bench

int main() { return kelvane::bench::measure(kelvane::bench::run); }
