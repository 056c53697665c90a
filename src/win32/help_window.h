#pragma once

#include <windows.h>

#include <memory>

#include "companions/mini_help.h"
#include "gui/win32/window_base.h"
#include "win32/fonts.h"

namespace kelvane::win32 {

/// The card of keyboard commands on the screen, above all other windows. It lives as long as its
/// owner, and is made anew each time it is opened.
class HelpWindow : private WindowBase<HelpWindow> {
 public:
  HelpWindow(HWND owner, MiniHelp& help);
  ~HelpWindow();
  HelpWindow(const HelpWindow&) = delete;
  HelpWindow& operator=(const HelpWindow&) = delete;

  /// Opens it with the keyboard focus in the card, or brings it to the front.
  void show();

 private:
  friend WindowBase<HelpWindow>;
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool cardMessage(HWND card, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool buttonMessage(HWND button, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  void make();
  void fill();
  void place();
  UINT resolution() const;
  void zoom(UINT dpi);
  void layOut(int width, int height);
  void escape();
  void makeButton();
  void saveReport();

  HWND owner_;
  MiniHelp& help_;
  HWND window_ = nullptr;
  HWND card_ = nullptr;
  HWND button_ = nullptr;
  std::unique_ptr<Fonts> fonts_;
};

}  // namespace kelvane::win32
