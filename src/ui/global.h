#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kelvane::Global {

/// A file of this name (UTF-8) can be opened for reading. A folder is no file.
bool fileExists(const std::string& path);

/// Lengths on the screen as the settings store them, independent of the screen's resolution: a
/// twip is the 1440th part of an inch. A resolution of no sense counts as 96 dots per inch, and
/// what does not fit 32 bits becomes the nearest that does.
std::int32_t twipsFromPixels(std::int32_t pixels, int dpi);
std::int32_t pixelsFromTwips(std::int32_t twips, int dpi);

struct Point {
  std::int32_t left = 0;
  std::int32_t top = 0;
  bool operator==(const Point&) const = default;
};
struct Size {
  std::int32_t width = 0;
  std::int32_t height = 0;
};
struct Area {
  Point at;
  Size size;
};

/// Where a window of this size goes that was last seen at `wanted`: there, as long as enough of its
/// title bar lies on some screen to be grabbed; otherwise onto the nearest screen. `screens` are
/// the screens' work areas, in the same pixels; with none the window stays where it was.
Point placeOnScreen(Point wanted, Size window, std::int32_t titleHeight,
                    std::span<const Area> screens);

}  // namespace kelvane::Global
