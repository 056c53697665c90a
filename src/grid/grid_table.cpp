#include "grid/grid_table.h"

#include "base/text.h"

namespace kelvane {

bool GridTable::accepts(int, char32_t) const { return true; }

char32_t GridTable::inPlaceOf(int, char32_t character) const { return character; }

std::string GridTable::corrected(GridCell, const std::string& text) const { return text; }

std::vector<std::string> GridTable::choices(int) const { return {}; }

bool GridTable::holds(GridCell cell, std::string_view upperText) const {
  return upper(this->cell(cell.row, cell.column)).find(upperText) != std::string::npos;
}

bool GridTable::mayHold(GridRow, std::string_view) const { return true; }

bool GridTable::keyDown(int, int) { return false; }

void GridTable::recall(GridRow) {}

bool GridTable::clicked(GridCell) { return false; }

void GridTable::headerClicked(int) {}

bool GridTable::undo() { return false; }

}  // namespace kelvane
