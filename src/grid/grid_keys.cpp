#include <algorithm>
#include <utility>

#include "base/utf8.h"
#include "grid/grid.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

constexpr long long kAllRows = 1LL << 40;
constexpr int kLetterZ = 'Z';
/// Of what is typed while the grid is locked.
constexpr std::size_t kMostHeld = 200;

}  // namespace

/// The visible column beside this one, -1 or the number of columns where there is none; where this
/// one is hidden too, one on the other side is better than none.
int Grid::neighbour(int column, int direction) const {
  const int count = static_cast<int>(columns_.size());
  const auto search = [&](int step) {
    int next = column + step;
    while (next >= 0 && next < count && !columns_[next].visible) next += step;
    return next;
  };
  const int next = search(direction);
  const bool found = next >= 0 && next < count;
  const bool hidden = column >= 0 && column < count && !columns_[column].visible;
  return found || !hidden ? next : std::clamp(search(-direction), 0, count - 1);
}

/// The cell that follows, over the ends of rows and round the ends of the table.
GridCell Grid::after(GridCell cell, int direction) const {
  const int count = static_cast<int>(columns_.size());
  const int next = neighbour(cell.column, direction);
  if (next >= 0 && next < count) return {cell.row, next};
  const GridRow rows = table_.rows();
  const GridRow row = direction > 0 ? (cell.row + 1) % rows : (cell.row + rows - 1) % rows;
  int first = direction > 0 ? 0 : count - 1;
  if (!columns_[first].visible) first = neighbour(first, direction);
  return {row, first};
}

void Grid::moveRow(long long rows) {
  const long long last = std::max<long long>(table_.rows(), 1) - 1;
  const long long row = std::clamp<long long>(current_.row + rows, 0, last);
  select({static_cast<GridRow>(row), current_.column});
}

void Grid::moveColumn(int direction) {
  const int next = neighbour(current_.column, direction);
  if (next >= 0 && next < static_cast<int>(columns_.size())) select({current_.row, next});
}

/// To the next cell of the row; beyond its end to the next row's, where rows are to be gone over.
bool Grid::moveOn(int direction, bool overRows) {
  const GridCell next = after(current_, direction);
  const bool wraps = direction > 0 ? next.row < current_.row : next.row > current_.row;
  if (next.row != current_.row && (!overRows || wraps)) return false;
  select(next);
  return true;
}

bool Grid::keyDown(int keyCode, int shift) {
  if (table_.rows() == 0) return !editing_ && table_.keyDown(keyCode, shift);
  if (editing_) return entryKey(keyCode, shift);
  if (dropped_ && listKey(keyCode)) return true;
  return table_.keyDown(keyCode, shift) || moveKey(keyCode, shift) || actionKey(keyCode, shift);
}

bool Grid::entryKey(int keyCode, int shift) {
  switch (keyCode) {
    case key::Return:
      commit();
      return true;
    case key::Esc:
      cancel();
      return true;
    case key::Tab:
      if (shift & (key::CtrlHeld | key::AltHeld)) return false;
      commit();
      return moveOn(shift & key::ShiftHeld ? -1 : 1, true);
    case key::Up:
    case key::Down:
    case key::PageUp:
    case key::PageDown:
      commit();
      return moveKey(keyCode, shift);
    default:
      return false;
  }
}

bool Grid::listKey(int keyCode) {
  switch (keyCode) {
    case key::Return:
    case key::F4:
      choose(marked_);
      return true;
    case key::Esc:
      closeList();
      return true;
    case key::Tab:
      // The list's choice is taken, and the key goes on to the next cell.
      choose(marked_);
      return false;
    case key::Up:
      mark(marked_ - 1);
      return true;
    case key::Down:
      mark(marked_ + 1);
      return true;
    case key::Home:
    case key::PageUp:
      mark(0);
      return true;
    case key::End:
    case key::PageDown:
      mark(static_cast<int>(items_.size()) - 1);
      return true;
    default:
      return false;
  }
}

bool Grid::moveKey(int keyCode, int shift) {
  const bool shifted = shift & key::ShiftHeld, control = shift & key::CtrlHeld;
  if (shift & key::AltHeld) return false;
  switch (keyCode) {
    case key::Up:
    case key::Down:
      moveRow(keyCode == key::Up ? -1 : 1);
      if (shifted) table_.recall(current_.row);
      return true;
    case key::Left:
    case key::Right:
      moveColumn(keyCode == key::Left ? -1 : 1);
      return true;
    case key::PageUp:
      moveRow(-static_cast<long long>(page_));
      return true;
    case key::PageDown:
      moveRow(page_);
      return true;
    case key::Home:
      if (control)
        moveRow(-kAllRows);
      else
        select({current_.row, 0});
      return true;
    case key::End:
      if (!control) {
        select({current_.row, neighbour(static_cast<int>(columns_.size()), -1)});
        return true;
      }
      moveRow(kAllRows);
      return true;
    case key::Tab:
      return !control && moveOn(shifted ? -1 : 1, false);
    default:
      return false;
  }
}

bool Grid::actionKey(int keyCode, int shift) {
  const bool pick = columns_[current_.column].pick;
  switch (keyCode) {
    case key::Return:
    case key::F2:
      if (pick)
        drop();
      else
        begin(Begin::Keep);
      return true;
    case key::F4:
      drop();
      return shift == 0;
    case key::Down:
    case key::Up:
      // Alt and an arrow, the system's keys for opening a list.
      return drop();
    case kLetterZ:
      if (shift != key::CtrlHeld) return false;
      if (!locked_) table_.undo();
      refresh();
      return true;
    default:
      return false;
  }
}

/// What was typed while the grid was locked, as one entry.
void Grid::typeHeld() {
  for (const char32_t character : std::exchange(typedWhileLocked_, {})) {
    if (!editing_) {
      keyPress(character);
    } else if (table_.accepts(current_.column, character)) {
      appendCharacter(text_, table_.inPlaceOf(current_.column, character));
    }
  }
}

bool Grid::keyPress(char32_t character) {
  const bool sign = character >= ' ';
  if (editing_) return sign && !table_.accepts(current_.column, character);
  if (!sign && character != key::Backspace) return false;
  if (locked_ && sign && typedWhileLocked_.size() < kMostHeld) typedWhileLocked_ += character;
  if (!changeable(current_.column)) return true;
  if (columns_[current_.column].pick) {
    typeAhead(character);
    return true;
  }
  if (sign && !table_.accepts(current_.column, character)) return true;
  begin(Begin::Replace);
  if (sign) appendCharacter(text_, table_.inPlaceOf(current_.column, character));
  return true;
}

}  // namespace kelvane
