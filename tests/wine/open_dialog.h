#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {

/// A dialog of the program's that is on the screen.
class OpenDialog {
 public:
  OpenDialog(const RunningPanel& panel, const wchar_t* windowClass) {
    eventually([&] { return (window_ = panel.findWindow(windowClass)) != nullptr; });
  }

  HWND window() const { return window_; }
  HWND item(int id) const { return GetDlgItem(window_, id); }
  bool isOpen() const { return window_ && IsWindow(window_) && IsWindowVisible(window_); }
  bool gone() const {
    return eventually([this] { return !isOpen(); });
  }
  bool checked(int id) const { return SendMessageW(item(id), BM_GETCHECK, 0, 0) == BST_CHECKED; }
  void press(int id) const { PostMessageW(item(id), BM_CLICK, 0, 0); }
  bool ticked(int id, bool on) const {
    press(id);
    return eventually([&] { return checked(id) == on; });
  }
  std::string text(int id) const {
    wchar_t text[2000] = L"";
    SendMessageW(item(id), WM_GETTEXT, 2000, reinterpret_cast<LPARAM>(text));
    return narrow(text);
  }
  void type(int id, const std::wstring& text) const {
    SendMessageW(item(id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  }
  void choose(int id, int row) const {
    SendMessageW(item(id), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageW(window_, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(item(id)));
  }
  int tab() const { return static_cast<int>(SendMessageW(item(id::All), TCM_GETCURSEL, 0, 0)); }
  int rows(int id) const {
    return static_cast<int>(SendMessageW(item(id), LVM_GETITEMCOUNT, 0, 0));
  }
  std::string cell(int id, int row, int column) const {
    LVITEMW item{};
    item.iSubItem = column;
    return itemText(this->item(id), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), item);
  }
  /// A key with modifiers (those of RunningPanel::key) for the dialog.
  void key(RunningPanel& panel, WORD code, int modifiers = 0) const {
    giveKeyboard(window_);
    panel.keyHere(code, modifiers);
  }

 private:
  HWND window_ = nullptr;
};

}  // namespace kelvane::wine
