#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

namespace kelvane::win32 {

// A list view as a table of texts. Rows and columns count from 0.

void addColumns(HWND list, std::initializer_list<const char*> captions);
/// Widths of the columns in pixels.
void setWidths(HWND list, std::initializer_list<int> widths);
/// Adds empty rows at the end, or takes the last ones away.
void setRowCount(HWND list, int rows);
/// Writes a cell where it has another text.
void setCell(HWND list, int row, int column, const std::string& text);
/// Selects a row and brings it into view.
void selectRow(HWND list, int row);

}  // namespace kelvane::win32
