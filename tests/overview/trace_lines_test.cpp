#include "overview/trace_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace kelvane {
namespace {

constexpr int kWide = 40, kHigh = 30;
constexpr LevelScale kTenToAPixel{-290, 10};

/// A picture on black, and what of its columns is not black any more.
class TraceLines : public testing::Test {
 protected:
  static LevelSpan level(float dBm) {
    LevelSpan span;
    span.add(dBm, dBm, dBm, 1);
    return span;
  }
  std::string drawn() const {
    std::string columns;
    for (int x = 0; x < kWide; ++x)
      columns += std::any_of(pixels.column(x), pixels.column(x) + kHigh,
                             [](std::uint32_t pixel) { return pixel != 0; })
                     ? '#'
                     : ' ';
    return columns;
  }

  std::vector<std::uint32_t> data = std::vector<std::uint32_t>(kWide * kHigh);
  Pixels pixels{data, kWide, kHigh};
  std::vector<LevelSpan> columns = std::vector<LevelSpan>(kWide);
  LineStyle style{.colour = 0xFF8040};
};

TEST_F(TraceLines, CrossColumnsWithoutAReadingButNeverAGap) {
  for (const int x : {2, 5, 20, 22}) columns[static_cast<std::size_t>(x)] = level(-100);
  columns[22].afterGap = true;
  drawLine(pixels, columns, kTenToAPixel, style, Through::Mean, 5);
  EXPECT_EQ(drawn(), "  ####              # #                 ");
}

TEST_F(TraceLines, StayInsideThePictureAndHaveTheirColour) {
  for (LevelSpan& column : columns) column.add(-5000, -100, 5000, 1);
  drawBand(pixels, columns, kTenToAPixel, style);
  EXPECT_TRUE(std::ranges::all_of(data, [&](std::uint32_t p) { return p == style.colour; }));
  style = {.colour = 0x000000, .share = 128};
  drawBand(pixels, columns, kTenToAPixel, style);
  EXPECT_EQ(data[0], 0x7F4020u) << "half of what was there";
}

TEST_F(TraceLines, HaveTheirDashesFromTheLeftEdge) {
  for (LevelSpan& column : columns) column = level(-100);
  style.dashes = {9, 3, 2, 3};
  drawLine(pixels, columns, kTenToAPixel, style, Through::Mean, 1);
  EXPECT_EQ(drawn(), "#########   ##   #########   ##   ######");
}

TEST_F(TraceLines, GoIntoTheRowsOfAScreenAndBack) {
  std::vector<std::uint32_t> screen(60 * 50);
  std::iota(screen.begin(), screen.end(), 1u);
  const std::vector<std::uint32_t> before = screen;
  const PixelRows part{screen.data() + 7 * 60 + 5, 60};
  copyFromRows(pixels, part);
  EXPECT_EQ(pixels.column(3)[4], before[(7 + 4) * 60 + 5 + 3]);
  copyToRows(pixels, part);
  EXPECT_EQ(screen, before);
}

}  // namespace
}  // namespace kelvane
