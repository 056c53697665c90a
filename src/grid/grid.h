#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "grid/grid_table.h"
#include "grid/type_ahead.h"

namespace kelvane {

/// One column, as the grid shows it.
struct GridColumn {
  std::string caption;
  int width = 60;        ///< 96ths of an inch
  bool right = false;    ///< its texts end at the right edge, as numbers do
  bool pick = false;     ///< its cells are chosen from a list
  bool editable = true;  ///< the operator may change its cells
  bool visible = true;
  std::string tip = {};  ///< of its pick list
};

/// A grid over a table: the current cell, what part is in view, and the editing of a cell by typing
/// or from a pick list. Portable; a window shows it and hands it the keys. Whatever an operator
/// does ends in calls of the table, which alone holds the data.
class Grid {
 public:
  /// What an entry into a cell begins with: the cell's text, or nothing.
  enum class Begin { Keep, Replace };
  enum class Find { AtCurrent, Next, Previous };

  Grid(GridTable& table, std::vector<GridColumn> columns)
      : table_(table), columns_(std::move(columns)) {}

  const GridTable& table() const { return table_; }
  const std::vector<GridColumn>& columns() const { return columns_; }
  void showColumn(int column, bool visible);
  /// 96ths of an inch.
  void setWidth(int column, int width);
  /// The column that the rows are sorted by, -1 for none; it is marked in the header.
  void markSorted(int column) { sorted_ = column; }
  int sortedBy() const { return sorted_; }
  /// While locked no cell can be changed; the current cell moves all the same. What is typed into
  /// it meanwhile goes into the cell that is current when the lock ends.
  void lock(bool locked);
  bool locked() const { return locked_; }
  /// What was typed meanwhile goes nowhere.
  void dropTyped() { typedWhileLocked_.clear(); }
  /// The table has other rows or other texts.
  void refresh();

  GridCell current() const { return current_; }
  /// Makes the cell current, or the nearest that there is, and brings it into view. An entry is
  /// committed first.
  void select(GridCell cell);

  /// The first row in view, and how many whole rows there is room for.
  GridRow top() const { return top_; }
  GridRow page() const { return page_; }
  void setPage(GridRow rows);
  void scrollTo(GridRow top);
  /// By rows, towards the end where positive; the current cell stays.
  void scrollBy(int rows);

  /// A cell is being edited by typing, with this text.
  bool editing() const { return editing_; }
  const std::string& text() const { return text_; }
  /// Answers whether the current cell can be edited by typing.
  bool begin(Begin how);
  /// The entry's text is now this one. What the column does not take is left out; the answer is the
  /// text without it.
  const std::string& edited(std::string_view text);
  /// Ends the entry, if there is one; the table gets its text when that changes the cell.
  void commit();
  void cancel() { editing_ = dropped_ = false; }

  /// The pick list of the current cell is open, with these items and this one marked, -1 for none.
  bool dropped() const { return dropped_; }
  const std::vector<std::string>& items() const { return items_; }
  int marked() const { return marked_; }
  /// Answers whether the current cell has a list to open.
  bool drop();
  void mark(int item);
  /// Takes the item into the cell and closes the list.
  void choose(int item);
  /// Closes the list; the cell stays as it is.
  void closeList() { dropped_ = false; }

  /// A key, and a typed character. Answer whether it is used up: nobody else may see it then. A key
  /// that is not, goes to the entry's own field while there is one.
  bool keyDown(int keyCode, int shift);
  bool keyPress(char32_t character);

  /// A click on a cell. Answers whether the table used it up.
  bool clicked(GridCell cell);

  /// An entry is committed first: rows may come to lie elsewhere.
  void headerClicked(int column);

  /// Makes the next cell current whose text holds this one, in any case of letters, going round at
  /// the ends. Answers whether there is one.
  bool find(std::string_view text, Find from);

 private:
  bool entryKey(int keyCode, int shift);
  bool listKey(int keyCode);
  bool moveKey(int keyCode, int shift);
  bool actionKey(int keyCode, int shift);
  void moveRow(long long rows);
  void moveColumn(int direction);
  bool moveOn(int direction, bool overRows);
  int neighbour(int column, int direction) const;
  GridCell after(GridCell cell, int direction) const;
  bool changeable(int column) const;
  void put(const std::string& text);
  void typeAhead(char32_t character);
  void typeHeld();
  void intoView();
  GridRow lastTop() const;

  GridTable& table_;
  std::vector<GridColumn> columns_;
  std::map<int, TypeAhead> typeAhead_;  ///< by column
  GridCell current_;
  GridRow top_ = 0;
  GridRow page_ = 1;
  int sorted_ = -1;
  bool locked_ = false;
  std::u32string typedWhileLocked_;
  bool editing_ = false;
  std::string text_;
  bool dropped_ = false;
  std::vector<std::string> items_;
  int marked_ = -1;
};

}  // namespace kelvane
