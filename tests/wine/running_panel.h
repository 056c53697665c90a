#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "base/win32/utf16.h"

namespace kelvane::wine {

// What is held down while a key is pressed.
constexpr int kShift = 1, kCtrl = 2, kAlt = 4;
/// The field in which a grid's cell is edited.
constexpr int kEntry = 2;

/// A window's text, also of another process.
std::string textOf(HWND window);

/// The folder that the built program lies in.
std::filesystem::path programFolder();

/// Waits until something is so, at most so long as a busy computer may need; answers whether it
/// came to be.
bool eventually(const std::function<bool()>& so, int milliseconds = 20000);

/// Moves the pointer to a place of the screen and waits until it stays there: the display's late
/// word of where it was before would take it back, and a click with it.
void pointAt(LONG x, LONG y);

/// The text of an item of another process's control, asked by a message whose structure carries the
/// address of a text.
template <class Item>
std::string itemText(HWND control, UINT message, WPARAM place, Item item) {
  constexpr int kRoom = 200;
  wchar_t text[kRoom] = L"";
  DWORD id = 0;
  GetWindowThreadProcessId(control, &id);
  const HANDLE process =
      OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
  void* there =
      VirtualAllocEx(process, nullptr, sizeof item + sizeof text, MEM_COMMIT, PAGE_READWRITE);
  item.pszText = reinterpret_cast<wchar_t*>(static_cast<Item*>(there) + 1);
  item.cchTextMax = kRoom - 1;
  WriteProcessMemory(process, there, &item, sizeof item, nullptr);
  SendMessageW(control, message, place, reinterpret_cast<LPARAM>(there));
  ReadProcessMemory(process, item.pszText, text, sizeof text, nullptr);
  VirtualFreeEx(process, there, 0, MEM_RELEASE);
  CloseHandle(process);
  return narrow(text);
}

/// Brings a window to the front and waits until keys reach it; false when they never do.
bool giveKeyboard(HWND window);

/// The program in a process of its own, driven from outside: by its windows, and by real keys and
/// clicks. Ends the process with its own end.
class RunningPanel {
 public:
  /// Starts the program with these words after its name; `current` is its current folder, the
  /// program's own where none is given.
  explicit RunningPanel(const std::wstring& words,
                        const std::filesystem::path& folder = programFolder(),
                        const std::filesystem::path& current = {});
  ~RunningPanel();
  RunningPanel(const RunningPanel&) = delete;
  RunningPanel& operator=(const RunningPanel&) = delete;

  /// Waits until the main window is on the screen; false when it never is.
  bool shown();
  /// Waits until the receiver with this tab is shown and answers, and keys reach the window; says
  /// what is wrong where that never comes.
  testing::AssertionResult settledOn(int tab);
  HWND window() const { return window_; }
  /// A window of the program's that is on the screen now, by its class; null for none.
  HWND findWindow(const wchar_t* windowClass) const;
  HWND control(int id) const { return GetDlgItem(window_, id); }
  bool visible(int id) const { return IsWindowVisible(control(id)) != 0; }
  bool enabled(int id) const { return IsWindowEnabled(control(id)) != 0; }
  std::string text(int id) const;
  std::string caption() const;
  /// The nine digits, a blank for one that shows nothing or is hidden.
  std::string digits() const;
  int selectedTab() const;
  int tabs() const;
  /// What the tab says, without the mark of its letter.
  std::string tabName(int tab) const;

  /// Real keys: the characters one after the other, "\r" for Enter, "\b" for Backspace, "\x1b" for
  /// Escape.
  void type(const std::string& characters);
  /// One real key with modifiers (Shift 1, Ctrl 2, Alt 4).
  void key(WORD code, int modifiers = 0);
  /// The same for the window that has the keyboard, whichever it is.
  void keyHere(WORD code, int modifiers = 0);
  /// A left click at a place of the screen.
  void clickAt(int x, int y);
  /// The left mouse button goes down on one control, the pointer moves, it comes up on another.
  void pressOn(int id);
  void pressAt(int x, int y);
  void pointAtControl(int id) const;
  void release();
  enum class Mouse { Left, Right };
  void click(int id, Mouse button = Mouse::Left);
  void clickTab(int tab);
  void pointAtTab(int tab);
  /// A left click where the pointer is.
  void clickHere();
  /// Turns the real wheel where the pointer is, positive away from the hand; 120 is a notch.
  void turnWheel(int delta);
  /// Tells the window that it is on a screen of this resolution now.
  void moveToResolution(int dpi);
  void close();

  /// The text of the message box that the program shows; waits for one, empty when none comes.
  std::string messageBox();
  /// Answers the message box that is shown.
  void answer(int button);
  /// Waits until the process has ended; -1 when it does not.
  int ended();
  DWORD processId() const { return process_.dwProcessId; }

 private:
  PROCESS_INFORMATION process_{};
  HWND window_ = nullptr;
};

}  // namespace kelvane::wine
