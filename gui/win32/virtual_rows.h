#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace kelvane::win32 {

/// One column of a virtual table.
struct RowColumn {
  std::string heading;
  int width;  ///< 96ths of an inch
  bool number = false;
  bool rest = false;  ///< takes what the other columns leave over
};

/// A list view as a table of any number of rows, whose texts are asked for when they come into
/// view. Rows and columns count from 0.
class VirtualRows {
 public:
  static constexpr DWORD kStyle =
      LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP;
  using Cell = std::function<std::string(std::size_t row, int column)>;

  /// The list has the style above and outlives this object.
  VirtualRows(HWND list, Cell cell);

  void setColumns(std::vector<RowColumn> columns, UINT dpi);
  /// Gives the columns their widths in the list's present size.
  void place(UINT dpi);
  /// Shows the arrow of a sorted column.
  void showOrder(int column, bool descending) const;
  /// There are other rows now.
  void setCount(std::size_t rows);

  /// The selected row; count() where none is.
  std::size_t selected() const;
  std::size_t count() const { return count_; }
  /// Selects a row; one that was out of view is shown in the middle, with its neighbours.
  void select(std::size_t row) const;

  /// Answers the list's question for a text or for a row's colours, if the notice is one.
  bool answer(const NMHDR& notice, LRESULT& result);

 private:
  LRESULT colours(NMLVCUSTOMDRAW& row) const;
  bool isInView(std::size_t row) const;
  void showAmongOthers(std::size_t row) const;
  int columns() const { return static_cast<int>(columns_.size()); }

  HWND list_;
  Cell cell_;
  std::vector<RowColumn> columns_;
  std::size_t count_ = 0;
  std::wstring text_;  ///< of the last answer, which the list reads after it
};

}  // namespace kelvane::win32
