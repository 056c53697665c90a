#include "grid/grid.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/utf8.h"
#include "ui/key_codes.h"

namespace kelvane {

void Grid::showColumn(int column, bool visible) {
  columns_[column].visible = visible;
  if (!columns_[current_.column].visible) select({current_.row, neighbour(current_.column, -1)});
}

void Grid::setWidth(int column, int width) {
  if (width > 0) columns_[column].width = width;
}

void Grid::lock(bool locked) {
  if (locked) cancel();
  if (std::exchange(locked_, locked) && !locked) typeHeld();
}

void Grid::refresh() {
  const GridRow rows = table_.rows();
  if (rows == 0 || current_.row >= rows) cancel();
  current_.row = std::min(current_.row, rows > 0 ? rows - 1 : 0);
  scrollTo(top_);
}

void Grid::select(GridCell cell) {
  commit();
  const GridRow rows = table_.rows();
  current_.row = std::min(cell.row, rows > 0 ? rows - 1 : 0);
  const int last = static_cast<int>(columns_.size()) - 1;
  const int column = std::clamp(cell.column, 0, last);
  current_.column = columns_[column].visible ? column : neighbour(column, 1);
  intoView();
}

void Grid::setPage(GridRow rows) {
  page_ = std::max<GridRow>(rows, 1);
  scrollTo(top_);
}

GridRow Grid::lastTop() const {
  const GridRow rows = table_.rows();
  return rows > page_ ? rows - page_ : 0;
}

void Grid::scrollTo(GridRow top) { top_ = std::min(top, lastTop()); }

void Grid::scrollBy(int rows) {
  const long long top = static_cast<long long>(top_) + rows;
  scrollTo(static_cast<GridRow>(std::clamp<long long>(top, 0, lastTop())));
}

void Grid::intoView() {
  if (current_.row < top_) scrollTo(current_.row);
  if (current_.row - top_ >= page_) scrollTo(current_.row - page_ + 1);
}

bool Grid::changeable(int column) const {
  return !locked_ && columns_[column].editable && table_.rows() > 0;
}

bool Grid::begin(Begin how) {
  const GridColumn& column = columns_[current_.column];
  if (!changeable(current_.column) || column.pick) return false;
  if (!editing_) {
    editing_ = true;
    text_ = how == Begin::Keep ? table_.cell(current_.row, current_.column) : std::string();
    intoView();
  }
  return true;
}

const std::string& Grid::edited(std::string_view text) {
  text_.clear();
  for (const char32_t character : characters(text)) {
    if (table_.accepts(current_.column, character))
      appendCharacter(text_, table_.inPlaceOf(current_.column, character));
  }
  return text_;
}

void Grid::commit() {
  dropped_ = false;
  if (!editing_) return;
  editing_ = false;
  // What was only looked at is no edit, even where typing the same would be corrected.
  if (text_ != table_.cell(current_.row, current_.column)) put(table_.corrected(current_, text_));
}

void Grid::put(const std::string& text) {
  if (text != table_.cell(current_.row, current_.column)) table_.store(current_, text);
}

bool Grid::drop() {
  if (!changeable(current_.column) || !columns_[current_.column].pick) return false;
  items_ = table_.choices(current_.column);
  if (items_.empty()) return false;
  const auto now = std::ranges::find(items_, table_.cell(current_.row, current_.column));
  marked_ = now == items_.end() ? -1 : static_cast<int>(now - items_.begin());
  intoView();
  dropped_ = true;
  return true;
}

void Grid::mark(int item) { marked_ = std::clamp(item, 0, static_cast<int>(items_.size()) - 1); }

void Grid::choose(int item) {
  if (!dropped_) return;
  dropped_ = false;
  if (item >= 0 && item < static_cast<int>(items_.size())) put(items_[item]);
}

void Grid::typeAhead(char32_t character) {
  const auto items = table_.choices(current_.column);
  const auto found = typeAhead_[current_.column].typed(character, items);
  if (!found) return;
  if (dropped_)
    mark(static_cast<int>(*found));
  else
    put(items[*found]);
}

bool Grid::clicked(GridCell cell) {
  select(cell);
  return table_.clicked(current_);
}

void Grid::headerClicked(int column) {
  commit();
  table_.headerClicked(column);
  refresh();
}

bool Grid::find(std::string_view text, Find from) {
  const std::string wanted = upper(text);
  if (wanted.empty() || table_.rows() == 0) return false;
  commit();
  const int direction = from == Find::Previous ? -1 : 1;
  GridCell cell = from == Find::AtCurrent ? current_ : after(current_, direction);
  const GridCell start = cell;
  bool may = table_.mayHold(cell.row, wanted);
  do {
    if (may && table_.holds(cell, wanted)) {
      select(cell);
      return true;
    }
    const GridRow row = cell.row;
    cell = after(cell, direction);
    if (cell.row != row) may = table_.mayHold(cell.row, wanted);
  } while (cell != start);
  return false;
}

}  // namespace kelvane
