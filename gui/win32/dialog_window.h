#pragma once

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/win32/posted_wake.h"
#include "gui/win32/tool_tips.h"
#include "gui/win32/window_base.h"

namespace kelvane::win32 {

/// A place in a dialog, in 96ths of an inch from its top left corner.
struct DialogArea {
  int left, top, width, height;
};

/// What a control does when the operator makes a resizable dialog larger than it was made; a sum.
enum Follow : int { MoveRight = 1, Widen = 2, MoveDown = 4, Heighten = 8 };

/// One control of a dialog: a window of one of the system's classes.
struct DialogItem {
  int id;
  const wchar_t* windowClass;
  DWORD style;  ///< besides that of a visible child
  std::string text;
  DialogArea area;
  std::string tip = {};
  int follow = 0;
  /// Spoken name, for what neither its own caption names nor the label added right before it.
  std::string spoken = {};
  bool announced = false;  ///< a text that screen readers say when it changes
};

/// Whether a window that opens takes the keyboard from the one that has it.
enum class Keyboard { Take, Leave };

/// A dialog made of the system's own controls, at any resolution and complete by keyboard: Tab,
/// mnemonics, Enter for the default button, Escape for IDCANCEL. A class of dialogs says what it
/// consists of and what its controls mean. Used on one thread, the one that runs messages.
class DialogWindow : private WindowBase<DialogWindow> {
 public:
  virtual ~DialogWindow();
  DialogWindow(const DialogWindow&) = delete;
  DialogWindow& operator=(const DialogWindow&) = delete;

  /// Null when the dialog was closed.
  HWND window() const { return window_; }
  /// Shows the dialog over its owner, which takes no input meanwhile. Returns when it is closed, by
  /// whatever, the program's end included.
  void runModal();
  /// Shows the dialog, or brings it to the front, and returns at once. Its keys work whoever's
  /// message loop runs.
  void showModeless(Keyboard keyboard = Keyboard::Take);
  /// Takes the dialog from the screen. The object stays, and may be asked to close again.
  void close();

 protected:
  struct Frame {
    const wchar_t* windowClass;  ///< by which a program outside finds the dialog
    std::string caption;
    HWND owner;              ///< the dialog lies over it, and on top of all windows where it does
    int width, height;       ///< of the inside, in 96ths of an inch
    bool resizable = false;  ///< the operator may make it larger
    /// A resizable dialog opens so large, as far as the screen has room for it.
    int openWidth = 0, openHeight = 0;
  };
  explicit DialogWindow(const Frame& frame);

  HWND add(const DialogItem& item);
  /// The two buttons that end a dialog, side by side from a place on: OK, under its own caption,
  /// and Cancel.
  struct Ends {
    int left, top;
    const char* ok;
    const char* tip;
    const char* cancel;
    int follow = 0;
    int width = 94;
  };
  void addEnds(const Ends& ends);
  HWND item(int id) const { return GetDlgItem(window_, id); }
  std::string text(int id) const;
  /// Writes a control's text where it has another.
  void setText(int id, const std::string& text);
  void setTip(int id, const std::string& tip) { tips_->set(item(id), tip); }
  void setCaptionTip(const std::string& tip) { tips_->setCaption(tip); }
  bool checked(int id) const;
  void check(int id, bool on);
  void enable(int id, bool on);
  /// Pixels for 96ths of an inch, where the dialog is.
  int scaled(int length) const { return MulDiv(length, static_cast<int>(dpi_), 96); }

  /// A control tells something: a button was clicked, Enter or Escape was pressed.
  virtual void command(int control, int notice) = 0;
  /// A control tells more; answers whether `result` is the answer.
  virtual bool notified(const NMHDR& notice, LRESULT& result);
  /// A key before anybody else has it; answers whether it is used up. Shift 1, Ctrl 2, Alt 4.
  virtual bool keyDown(int keyCode, int shift);
  /// Alt and a character, before the controls' mnemonics.
  virtual bool accelerator(wchar_t character);
  /// The wheel was turned, by notches away from the operator.
  virtual bool wheel(int notches);
  /// Files may be dropped on the dialog; each drop is told by its first file's full name.
  void takeFiles() { DragAcceptFiles(window_, TRUE); }
  virtual void fileDropped(const std::wstring&) {}
  /// The timer set with startTimer fired, or what waker() gave was called.
  virtual void tick() {}
  /// To be called, from any thread, by what works beside the dialog: asks for tick() soon.
  std::function<void()> waker();
  /// Gives the controls their fonts and places before the dialog is shown, which is quick then.
  void prepare();
  void startTimer(UINT milliseconds) { SetTimer(window_, 1, milliseconds, nullptr); }
  /// The controls have their places and fonts of a new resolution.
  virtual void laidOut() {}
  /// A resizable dialog has another size, its controls their places in it.
  virtual void resized() {}
  /// The button that Enter presses now.
  virtual int defaultButton() const { return IDOK; }
  /// A dialog over this one stands in its place: this one is not seen meanwhile.
  virtual bool makesRoom() const { return false; }
  /// Something takes long: the pointer says so.
  virtual bool waiting() const { return false; }
  /// waiting() answers otherwise now: the pointer is to show it also while it rests.
  void showPointer() const;
  /// Where the dialog, of this size in pixels, is shown first; over its owner if it does not mind.
  virtual POINT place(SIZE size, POINT overOwner) const;
  /// What a control is painted upon; null for the dialog's own background.
  virtual HBRUSH background(int control) const;

 private:
  struct Placed {
    HWND window;
    DialogArea area;
    int follow;
    bool announced;
    bool oneLine;  ///< a field for one line of text
  };

  friend WindowBase<DialogWindow>;
  static LRESULT CALLBACK buttonProcedure(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR, DWORD_PTR self);
  static LRESULT CALLBACK previewKeys(int code, WPARAM wParam, LPARAM lParam);
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool takes(MSG& message);
  /// Moves the focus as the system's own dialogs do: to a control, or by Tab's order to the next
  /// (`which` 0) or previous one.
  void goTo(WPARAM which, bool named);
  /// The outer size for an inside in 96ths of an inch.
  SIZE outerSize(int width, int height) const;
  void measure(UINT dpi);
  void dpiChanged(UINT dpi, const RECT& suggested);
  void applyFont();
  void placeControls();
  void name(HWND control, const DialogItem& item);
  void placeOverOwner();
  void activated(bool active);
  void buttonPressed(HWND button);
  void giveKeyboardBack();
  void gone();

  HWND window_ = nullptr;
  HWND owner_;
  int width_, height_;
  int openWidth_, openHeight_;
  bool resizable_;
  UINT dpi_ = 96;  ///< at which it is laid out
  HFONT font_ = nullptr;
  HWND focus_ = nullptr;
  /// Where the keyboard was when the mouse pressed a button, and the dialog's control around that.
  HWND keyboardWas_ = nullptr, keyboardWasIn_ = nullptr;
  HHOOK hook_ = nullptr;
  bool ownerDisabled_ = false;
  bool prepared_ = false;
  int wheelRest_ = 0;
  ULONGLONG leftUntil_ = 0;  ///< until then the keyboard goes back to the owner
  std::vector<Placed> controls_;
  std::string label_;  ///< for the control that is added next
  const wchar_t* className_;
  std::unique_ptr<ToolTips> tips_;
  std::shared_ptr<PostedWake> wake_;  ///< once somebody works beside the dialog
};

}  // namespace kelvane::win32
