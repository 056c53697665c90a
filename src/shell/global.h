#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kelvane::Global {

/// The smaller of two; the first where they are equal.
template <class T>
const T& smaller(const T& a, const T& b) {
  return b < a ? b : a;
}

/// The step in Hz that the held modifier keys ask for (bits of key::Shift): 100 with Alt, else 10
/// with Ctrl, else 1 with Shift, else the one in use.
int stepMultiplier(int shiftState, int inUse);

/// Where blanks are added.
enum class Side { Left, Right };

/// The text, filled up with blanks to a width in characters; a longer one is never cut.
std::string pad(std::string_view text, std::size_t width, Side side);
/// Right-aligned.
std::string padLeft(std::string_view text, std::size_t width);
/// Left-aligned.
std::string padRight(std::string_view text, std::size_t width);

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
