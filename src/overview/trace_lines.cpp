#include "overview/trace_lines.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace kelvane {

namespace {

/// A colour that is laid over others by a share of 0 to 256; red and blue are reckoned together.
class Ink {
 public:
  Ink(std::uint32_t colour, int share)
      : rest_(256 - static_cast<std::uint32_t>(share)),
        redBlue_((colour & 0xFF00FF) * static_cast<std::uint32_t>(share)),
        green_((colour >> 8 & 0xFF) * static_cast<std::uint32_t>(share)) {}

  std::uint32_t over(std::uint32_t under) const {
    const std::uint32_t redBlue = (under & 0xFF00FF) * rest_ + redBlue_;
    const std::uint32_t green = (under >> 8 & 0xFF) * rest_ + green_;
    return (redBlue >> 8 & 0xFF00FF) | (green & 0xFF00);
  }

 private:
  std::uint32_t rest_, redBlue_, green_;
};

int ofWhole(int share) { return share * 256 / 255; }

/// Colours part of a column; ends within a pixel colour it by their share.
void drawRun(const Pixels& pixels, int x, double top, double bottom, const LineStyle& style) {
  top = std::max(top, 0.0);
  bottom = std::min(bottom, static_cast<double>(pixels.height));
  if (top >= bottom) return;
  std::uint32_t* const column = pixels.column(x);
  const auto mix = [&](int y, double covered) {
    column[y] = Ink(style.colour, ofWhole(static_cast<int>(covered * style.share))).over(column[y]);
  };
  const int first = static_cast<int>(top), last = static_cast<int>(bottom);
  if (first == last) return mix(first, bottom - top);
  mix(first, first + 1 - top);
  const Ink ink(style.colour, ofWhole(style.share));
  for (int y = first + 1; y < last; ++y) column[y] = ink.over(column[y]);
  if (last < bottom) mix(last, bottom - last);
}

/// Where a line has its dashes.
class Dashes {
 public:
  explicit Dashes(const LineStyle& style) {
    for (std::size_t i = 0; i < style.dashes.size(); ++i)
      ends_[i] = length_ += style.dashes[i] * style.dashUnit;
  }
  bool at(int x) const {
    if (length_ <= 0) return true;
    const double place = x - std::floor(x / length_) * length_;
    std::size_t part = 0;
    while (part + 1 < ends_.size() && place >= ends_[part]) ++part;
    return part % 2 == 0;
  }

 private:
  std::array<double, 6> ends_{};
  double length_ = 0;
};

/// What of each column the line covers, from top to bottom.
struct Covered {
  double top = 1e9, bottom = -1e9;
};

void cover(std::vector<Covered>& covered, int x, double a, double b) {
  Covered& column = covered[static_cast<std::size_t>(x)];
  column.top = std::min({column.top, a, b});
  column.bottom = std::max({column.bottom, a, b});
}

/// From the middle of one column to the middle of another.
void coverSegment(std::vector<Covered>& covered, int x0, double y0, int x1, double y1) {
  const auto at = [&](double x) { return y0 + (y1 - y0) * (x - x0) / (x1 - x0); };
  for (int x = x0; x <= x1; ++x)
    cover(covered, x, at(std::max<double>(x0, x - 0.5)), at(std::min<double>(x1, x + 0.5)));
}

/// Calls a function for each pixel, in squares that stay near each other either way.
template <class Each>
void inSquares(int width, int height, Each each) {
  constexpr int kSquare = 16;
  for (int left = 0; left < width; left += kSquare) {
    for (int top = 0; top < height; top += kSquare) {
      for (int x = left; x < std::min(left + kSquare, width); ++x)
        for (int y = top; y < std::min(top + kSquare, height); ++y) each(x, y);
    }
  }
}

}  // namespace

void copyFromRows(const Pixels& to, PixelRows from) {
  inSquares(to.width, to.height,
            [&](int x, int y) { to.column(x)[y] = from.first[y * from.rowLength + x]; });
}

void copyToRows(const Pixels& from, PixelRows to) {
  inSquares(from.width, from.height,
            [&](int x, int y) { to.first[y * to.rowLength + x] = from.column(x)[y]; });
}

void drawBand(const Pixels& pixels, std::span<const LevelSpan> columns, const LevelScale& scale,
              const LineStyle& style) {
  const int width = std::min(pixels.width, static_cast<int>(columns.size()));
  for (int x = 0; x < width; ++x) {
    const LevelSpan& column = columns[static_cast<std::size_t>(x)];
    if (column.readings == 0) continue;
    drawRun(pixels, x, scale.y(column.greatest, pixels.height),
            scale.y(column.least, pixels.height), style);
  }
}

void drawLine(const Pixels& pixels, std::span<const LevelSpan> columns, const LevelScale& scale,
              const LineStyle& style, Through through, int longest) {
  const int width = std::min(pixels.width, static_cast<int>(columns.size()));
  // Far outside the picture a line needs no exact place.
  const auto yOf = [&](const LevelSpan& column) {
    const double level = through == Through::Mean ? column.mean : column.greatest;
    return std::clamp(scale.y(level, pixels.height), -1000.0, pixels.height + 1000.0);
  };
  std::vector<Covered> covered(static_cast<std::size_t>(width));
  int before = -1;
  double yBefore = 0;
  for (int x = 0; x < width; ++x) {
    const LevelSpan& column = columns[static_cast<std::size_t>(x)];
    if (column.readings == 0) continue;
    const double y = yOf(column);
    const bool joined = before >= 0 && !column.afterGap && x - before <= longest;
    if (joined)
      coverSegment(covered, before, yBefore, x, y);
    else
      cover(covered, x, y, y);
    before = x;
    yBefore = y;
  }
  const Dashes dashes(style);
  for (int x = 0; x < width; ++x) {
    const Covered& column = covered[static_cast<std::size_t>(x)];
    if (column.top > column.bottom || !dashes.at(x)) continue;
    drawRun(pixels, x, column.top - style.thickness / 2, column.bottom + style.thickness / 2,
            style);
  }
}

std::vector<LevelSpan> rolling(std::span<const LevelSpan> columns, int width) {
  std::vector<LevelSpan> result(columns.begin(), columns.end());
  std::deque<int> greatest;  // places whose values fall
  double sum = 0;
  int readings = 0, first = 0;
  const auto of = [&columns](int x) -> const LevelSpan& {
    return columns[static_cast<std::size_t>(x)];
  };
  for (int x = 0; x < static_cast<int>(columns.size()); ++x) {
    const LevelSpan& column = of(x);
    if (column.readings == 0) continue;
    const int from = column.afterGap ? x : x - width + 1;
    for (; first < from; ++first) {
      sum -= static_cast<double>(of(first).mean) * of(first).readings;
      readings -= of(first).readings;
    }
    while (!greatest.empty() && greatest.front() < from) greatest.pop_front();
    while (!greatest.empty() && of(greatest.back()).greatest <= column.greatest)
      greatest.pop_back();
    greatest.push_back(x);
    sum += static_cast<double>(column.mean) * column.readings;
    readings += column.readings;
    result[static_cast<std::size_t>(x)].mean = static_cast<float>(sum / readings);
    result[static_cast<std::size_t>(x)].greatest = of(greatest.front()).greatest;
  }
  return result;
}

}  // namespace kelvane
