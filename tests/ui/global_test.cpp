#include "ui/global.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

#include "tests/fakes/temp_folder.h"

namespace kelvane::Global {

void PrintTo(const Point& point, std::ostream* out) { *out << point.left << ", " << point.top; }

namespace {

using Limits = std::numeric_limits<std::int32_t>;

TEST(Global, KnowsAFileByOpeningIt) {
  const fakes::TempFolder folder;
  const std::string file = (folder.path() / "M\u00FCnchen.txt").string();
  EXPECT_FALSE(fileExists(file));
  std::ofstream(file).close();
  EXPECT_TRUE(fileExists(file));
  EXPECT_FALSE(fileExists(folder.path().string()));
  EXPECT_FALSE(fileExists(file + "/inside"));
  EXPECT_FALSE(fileExists(std::string(400, 'x')));
  EXPECT_FALSE(fileExists(""));
}

TEST(Twips, GiveEveryPixelBack) {
  EXPECT_EQ(twipsFromPixels(100, 96), 1500);
  EXPECT_EQ(twipsFromPixels(-100, 144), -1000);
  EXPECT_EQ(twipsFromPixels(100, 0), 1500);
  for (const int dpi : {96, 120, 144, 168, 200, 288})
    for (int pixels = -3000; pixels <= 3000; pixels += 7)
      ASSERT_EQ(pixelsFromTwips(twipsFromPixels(pixels, dpi), dpi), pixels) << dpi;
  EXPECT_EQ(twipsFromPixels(Limits::max(), 96), Limits::max());
  EXPECT_EQ(twipsFromPixels(Limits::min(), 96), Limits::min());
}

struct Placing : testing::Test {
  Point place(Point wanted, Size window = {800, 300}) const {
    return placeOnScreen(wanted, window, 30, screens);
  }
  // Two screens beside each other, the left one's top lower, a taskbar at its bottom.
  std::vector<Area> screens{{{0, 0}, {1920, 1040}}, {{-1280, 100}, {1280, 900}}};
};

TEST_F(Placing, LeavesAWindowWhoseTitleCanBeGrabbed) {
  for (const Point fine :
       {Point{100, 100}, {-800, 500}, {1860, 500}, {-740, 0}, {-400, 120}, {500, 1020}, {5, -15}})
    EXPECT_EQ(place(fine), fine);
}

TEST_F(Placing, BringsALostWindowToTheNearestScreen) {
  EXPECT_EQ(place({5000, 200}), (Point{1120, 200}));
  EXPECT_EQ(place({-5000, 200}), (Point{-1280, 200}));
  EXPECT_EQ(place({300, 1200}), (Point{300, 740}));
  EXPECT_EQ(place({300, -100}), (Point{300, 0}));
  EXPECT_EQ(place({-1300, 10}), (Point{-1280, 100}));
  EXPECT_EQ(place({1900, 500}), (Point{1120, 500}));
}

TEST_F(Placing, FindsTheNearerOfTwoScreensAboveEachOther) {
  screens[1] = {{0, 1100}, {1920, 1000}};
  EXPECT_EQ(place({300, 3000}), (Point{300, 1800}));
  EXPECT_EQ(place({300, -3000}), (Point{300, 0}));
}

TEST_F(Placing, SurvivesDamagedPositionsAndOddScreens) {
  EXPECT_EQ(place({Limits::max(), Limits::max()}), (Point{1120, 740}));
  EXPECT_EQ(place({Limits::min(), Limits::min()}), (Point{-1280, 100}));
  EXPECT_EQ(place({5000, 5000}, {9000, 9000}), (Point{0, 0}));
  screens.clear();
  EXPECT_EQ(place({5000, 5000}), (Point{5000, 5000}));
}

}  // namespace
}  // namespace kelvane::Global
