#include "ui/global.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <system_error>

#include "base/safe_file.h"

namespace kelvane::Global {

namespace {

constexpr int kTwipsPerInch = 1440;

int sensibleDpi(int dpi) { return dpi > 0 ? dpi : 96; }

std::int32_t scaled(std::int64_t value, int by, int to) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t half = value < 0 ? -to / 2 : to / 2;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>((value * by + half) / to, Limits::min(), Limits::max()));
}

/// A rectangle whose edges cannot overflow, wherever a damaged setting puts it.
struct Edges {
  std::int64_t left, top, right, bottom;
};

Edges edges(Point at, Size size) {
  return {at.left, at.top, std::int64_t{at.left} + size.width, std::int64_t{at.top} + size.height};
}

/// Half the bar's height and twice that height along it are enough to grab it.
bool canBeGrabbed(const Edges& bar, const Edges& screen) {
  const auto width = std::min(bar.right, screen.right) - std::max(bar.left, screen.left);
  const auto height = std::min(bar.bottom, screen.bottom) - std::max(bar.top, screen.top);
  const auto barHeight = bar.bottom - bar.top;
  return 2 * height >= barHeight && width >= std::min(2 * barHeight, bar.right - bar.left);
}

std::int64_t gap(std::int64_t from, std::int64_t to, std::int64_t low, std::int64_t high) {
  return std::max<std::int64_t>({low - to, from - high, 0});
}

std::int64_t distance(const Edges& bar, const Edges& screen) {
  return gap(bar.left, bar.right, screen.left, screen.right) +
         gap(bar.top, bar.bottom, screen.top, screen.bottom);
}

/// Fits it between the two edges; where it is too long its start stays in view.
std::int32_t within(std::int64_t start, std::int64_t length, std::int64_t low, std::int64_t high) {
  return static_cast<std::int32_t>(std::max(std::min(start, high - length), low));
}

}  // namespace

bool fileExists(const std::string& path) {
  const std::filesystem::path file = pathFromText(path);
  std::error_code unknown;
  // Some systems open a folder like a file.
  return !std::filesystem::is_directory(file, unknown) && std::ifstream(file).is_open();
}

std::int32_t twipsFromPixels(std::int32_t pixels, int dpi) {
  return scaled(pixels, kTwipsPerInch, sensibleDpi(dpi));
}

std::int32_t pixelsFromTwips(std::int32_t twips, int dpi) {
  return scaled(twips, sensibleDpi(dpi), kTwipsPerInch);
}

Point placeOnScreen(Point wanted, Size window, std::int32_t titleHeight,
                    std::span<const Area> screens) {
  if (screens.empty()) return wanted;
  const Edges bar = edges(wanted, {window.width, titleHeight});
  const Area* nearest = &screens.front();
  for (const Area& screen : screens) {
    const Edges here = edges(screen.at, screen.size);
    if (canBeGrabbed(bar, here)) return wanted;
    if (distance(bar, here) < distance(bar, edges(nearest->at, nearest->size))) nearest = &screen;
  }
  const Edges onto = edges(nearest->at, nearest->size);
  return {within(wanted.left, window.width, onto.left, onto.right),
          within(wanted.top, window.height, onto.top, onto.bottom)};
}

}  // namespace kelvane::Global
