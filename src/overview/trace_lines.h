#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "levels/level_history.h"

namespace kelvane {

/// A picture in memory, column after column from the left, each from top to bottom: lines and bands
/// are drawn column by column, and a screen's rows would have each of their pixels somewhere else.
/// A pixel is 0x00RRGGBB.
struct Pixels {
  std::span<std::uint32_t> data;
  int width = 0, height = 0;

  std::uint32_t* column(int x) const {
    return data.data() + static_cast<std::size_t>(x) * static_cast<std::size_t>(height);
  }
};

/// A rectangle of a picture whose rows lie one after the other, `rowLength` pixels apart.
struct PixelRows {
  std::uint32_t* first = nullptr;
  std::ptrdiff_t rowLength = 0;
};
/// Copies a picture of the same size out of rows, and back into them.
void copyFromRows(const Pixels& to, PixelRows from);
void copyToRows(const Pixels& from, PixelRows to);

/// How one trace is drawn.
struct LineStyle {
  std::uint32_t colour = 0;              ///< 0x00RRGGBB
  double thickness = 1;                  ///< pixels
  std::array<std::uint8_t, 6> dashes{};  ///< lengths of dashes and gaps, in turn; 0 ends them
  double dashUnit = 1;                   ///< pixels of one unit of them
  int share = 255;                       ///< of the colour over what is there, 0 to 255
};

/// The levels that the top and the bottom of a picture stand for, dBm.
struct LevelScale {
  double bottom = -130, top = -30;
  double y(double level, int height) const { return (top - level) / (top - bottom) * height; }
  bool operator==(const LevelScale&) const = default;
};

/// What of each column a line goes through.
enum class Through { Mean, Greatest };

/// Fills from least to greatest of each column.
void drawBand(const Pixels& pixels, std::span<const LevelSpan> columns, const LevelScale& scale,
              const LineStyle& style);
/// Joins the columns by a line, across columns without a reading too, never across a gap nor where
/// more than `longest` columns follow each other without a reading.
void drawLine(const Pixels& pixels, std::span<const LevelSpan> columns, const LevelScale& scale,
              const LineStyle& style, Through through, int longest);

/// The columns with the mean and the greatest of the `width` columns that end with each; a gap
/// begins anew.
std::vector<LevelSpan> rolling(std::span<const LevelSpan> columns, int width);

}  // namespace kelvane
