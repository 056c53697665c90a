#pragma once

#include <string>
#include <utility>
#include <vector>

#include "grid/grid_table.h"
#include "grid/undo_stack.h"

namespace kelvane::fakes {

/// A table of plain texts for a grid: what was stored stands in it, and what the grid's keys asked
/// for is written down. Column 1 takes digits only and never gets less than 100; column 2 has a
/// pick list.
class TextTable : public GridTable {
 public:
  explicit TextTable(std::vector<std::vector<std::string>> texts) : texts(std::move(texts)) {}

  GridRow rows() const override { return static_cast<GridRow>(texts.size()); }
  std::string cell(GridRow row, int column) const override { return texts[row][column]; }
  void store(GridCell cell, const std::string& text) override {
    std::string& there = texts[cell.row][cell.column];
    edits.add([&there, before = there] { there = before; });
    there = text;
    ++stores;
  }
  bool accepts(int column, char32_t character) const override {
    return column != 1 || (character >= '0' && character <= '9');
  }
  std::string corrected(GridCell cell, const std::string& text) const override {
    if (cell.column != 1) return text;
    if (text.empty()) return this->cell(cell.row, cell.column);
    return text.size() < 3 ? "100" : text;
  }
  std::vector<std::string> choices(int column) const override {
    return column == 2 ? list : std::vector<std::string>();
  }
  bool keyDown(int keyCode, int) override {
    keys.push_back(keyCode);
    return keyCode == own;
  }
  void recall(GridRow row) override { recalled.push_back(row); }
  void headerClicked(int column) override { headers.push_back(column); }
  bool undo() override { return edits.takeBack(); }

  std::vector<std::vector<std::string>> texts;
  std::vector<std::string> list{"AM", "AMS", "USB"};
  UndoStack edits;
  int stores = 0;
  int own = 0;  ///< a key of the table's own
  std::vector<int> keys;
  std::vector<GridRow> recalled;
  std::vector<int> headers;
};

}  // namespace kelvane::fakes
