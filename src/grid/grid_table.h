#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "grid/grid_row.h"

namespace kelvane {

struct GridCell {
  GridRow row = 0;
  int column = 0;

  bool operator==(const GridCell&) const = default;
};

/// The table behind a grid: its cells as texts (UTF-8), the rules of their editing, and what the
/// grid's keys do beside editing. Rows and columns count from 0; a grid asks only for rows that it
/// shows, so there may be a million. All calls come on the user-interface thread.
class GridTable {
 public:
  virtual ~GridTable() = default;

  virtual GridRow rows() const = 0;
  virtual std::string cell(GridRow row, int column) const = 0;
  /// The operator gave a cell another text, `corrected` already.
  virtual void store(GridCell cell, const std::string& text) = 0;

  /// Whether the column takes a typed character.
  virtual bool accepts(int column, char32_t character) const;
  /// What the column has in the place of a character that it takes; mostly the same.
  virtual char32_t inPlaceOf(int column, char32_t character) const;
  /// What a cell gets when the operator ends editing it with this text; the cell's present text
  /// where it must stay as it is.
  virtual std::string corrected(GridCell cell, const std::string& text) const;
  /// What a cell of a column with a pick list can hold, in the list's order.
  virtual std::vector<std::string> choices(int column) const;
  /// Whether a cell's text holds another one; that one comes in upper case.
  virtual bool holds(GridCell cell, std::string_view upperText) const;
  /// False where no cell of the row holds the text: long tables are searched faster by rows.
  virtual bool mayHold(GridRow row, std::string_view upperText) const;

  /// A key in the grid, while no cell is edited, before the grid uses it itself. Answers whether it
  /// is used up.
  virtual bool keyDown(int keyCode, int shift);
  /// A cell was clicked. Answers whether that is all the click does.
  virtual bool clicked(GridCell cell);
  /// Shift and an arrow: what this row holds is wanted on the receiver.
  virtual void recall(GridRow row);
  virtual void headerClicked(int column);
  /// Takes the last edit back. Answers whether there was one.
  virtual bool undo();
};

}  // namespace kelvane
