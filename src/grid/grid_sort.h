#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "grid/grid_row.h"

namespace kelvane {

/// By what a grid is sorted: the cells read as numbers, or compared as text. Text cells are joined
/// with the row's number, in between with the cell of a second column where one is given; so rows
/// with equal cells come in the text order of their numbers, row 10 before row 2.
struct GridOrder {
  enum class By { Number, Text };
  int column = 0;
  By by = By::Text;
  std::optional<int> joined;
};

/// The keys of rows by number, and the sort by them. Equal numbers come in the order of the rows'
/// own numbers.
class NumberKeys {
 public:
  explicit NumberKeys(std::size_t rows) { keys_.reserve(rows); }
  void add(GridRow row, std::string_view cell);
  /// Puts the added rows in ascending order.
  void sortInto(std::span<GridRow> order);

 private:
  struct Key {
    std::uint64_t number;  ///< its bits, so that they compare as the numbers do
    GridRow row;
  };
  std::vector<Key> keys_;
};

/// The keys of rows by text, and the sort by them, byte by byte.
class TextKeys {
 public:
  explicit TextKeys(std::size_t rows) { keys_.reserve(rows); }
  void add(GridRow row, std::string_view cell, std::string_view joined = {});
  void sortInto(std::span<GridRow> order);

 private:
  struct Key {
    std::uint64_t first, second;  ///< its first sixteen bytes, most significant first
    std::size_t at;
    std::uint32_t length;
    GridRow row;
  };
  void dropCommonStart();

  std::string texts_;
  std::vector<Key> keys_;
};

/// Sorts a list of rows, ascending, by one column of a table that itself is not moved.
/// `cell(row, column)` answers a cell's text, and is asked once for each row and column. The time
/// grows with n log n whatever the cells hold, the stack only with log n.
template <class Cell>
void sortGrid(std::span<GridRow> order, const GridOrder& by, Cell&& cell) {
  if (by.by == GridOrder::By::Number) {
    NumberKeys keys(order.size());
    for (const GridRow row : order) keys.add(row, cell(row, by.column));
    return keys.sortInto(order);
  }
  TextKeys keys(order.size());
  for (const GridRow row : order) {
    if (by.joined)
      keys.add(row, cell(row, by.column), cell(row, *by.joined));
    else
      keys.add(row, cell(row, by.column));
  }
  keys.sortInto(order);
}

}  // namespace kelvane
