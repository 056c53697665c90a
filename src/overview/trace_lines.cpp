#include "overview/trace_lines.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace kelvane {

namespace {

std::uint32_t mixed(std::uint32_t under, std::uint32_t over, int share) {
  const auto mix = [share](std::uint32_t a, std::uint32_t b) {
    return (a * static_cast<std::uint32_t>(255 - share) + b * static_cast<std::uint32_t>(share)) /
           255;
  };
  return mix(under >> 16 & 255, over >> 16 & 255) << 16 |
         mix(under >> 8 & 255, over >> 8 & 255) << 8 | mix(under & 255, over & 255);
}

/// Colours part of a column; ends within a pixel colour it by their share.
void drawRun(const Pixels& pixels, int x, double top, double bottom, const LineStyle& style) {
  top = std::max(top, 0.0);
  bottom = std::min(bottom, static_cast<double>(pixels.height));
  for (int y = static_cast<int>(top); y < bottom; ++y) {
    const double covered = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
    std::uint32_t& pixel =
        pixels.data[static_cast<std::size_t>(y) * static_cast<std::size_t>(pixels.width) +
                    static_cast<std::size_t>(x)];
    pixel = mixed(pixel, style.colour, static_cast<int>(covered * style.share));
  }
}

bool inDash(const LineStyle& style, int x) {
  double length = 0;
  for (const std::uint8_t part : style.dashes) length += part * style.dashUnit;
  if (length <= 0) return true;
  double rest = std::fmod(x, length);
  for (std::size_t i = 0; i < style.dashes.size(); ++i) {
    rest -= style.dashes[i] * style.dashUnit;
    if (rest < 0) return i % 2 == 0;
  }
  return false;
}

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

}  // namespace

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
    joined ? coverSegment(covered, before, yBefore, x, y) : cover(covered, x, y, y);
    before = x;
    yBefore = y;
  }
  for (int x = 0; x < width; ++x) {
    const Covered& column = covered[static_cast<std::size_t>(x)];
    if (column.top > column.bottom || !inDash(style, x)) continue;
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
