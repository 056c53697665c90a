#pragma once

#include <array>
#include <string>

#include "ui/control.h"
#include "ui/window_commands.h"

namespace kelvane {

/// The main window's controls that make up the digit row. Digit 0 is the most significant.
struct FrqDigitControls {
  static constexpr int kPlaces = 9;

  Control& FrqFrame;
  Control& FrqDotit;
  Control& FrqFocus;
  std::array<Control, kPlaces>& FrqDigit;
  Control& FrqBfo;
};

/// The frequency digit row: shows a frequency in nine digits and takes a new one from the hand,
/// digit by digit or typed in kHz. It never talks to a receiver: the main window hands it the
/// receiver's present frequency with each key (Hz, -1 when none is known) and sends `Value` when a
/// key came back committed.
///
/// A key code or character set to 0 was consumed. With no known frequency only a whole one that is
/// entered is committed: what changes the present one is consumed, and the row stays as it is. Used
/// on the user-interface thread.
class clsFrqDigit {
 public:
  /// The row shows nothing yet; its bounds are 0 to 29 999 999 Hz until `Boundary`. Controls and
  /// window must outlive it.
  clsFrqDigit(const FrqDigitControls& controls, WindowCommands& window);

  /// The range in Hz and the finest step that the receiver accepts (1, 10, 100 ...): hides the
  /// leading digits that `max` does not need, and what is typed or overwritten stays. Digits that
  /// are free follow at once.
  void Boundary(double max, double min, int resolution);
  /// Shows a BFO offset in Hz, nothing for 0.
  void BFO(int offset);
  void BFOState(bool on);

  /// The number that the digits show, in Hz; blanks and "x" count as 0.
  double Value() const;
  /// Shows a frequency if it lies within the bounds, and ignores it otherwise; -1 shows "x" in all
  /// digits and empties the BFO label.
  void Value(double hertz);
  /// Shows a frequency without asking the bounds; what nine digits cannot show comes out as "x".
  void SetValue(double hertz);

  /// A digit holds the selection.
  bool Processed() const { return digitSelected_; }
  /// Takes the typed number as a step in Hz; -1 when nothing is typed, 1000 when it is above 30
  /// 000.
  int Step();
  /// Answers and clears the channelized flag that ":" sets.
  bool Chn();
  /// Clears both flags of the number to come; the lamp shows them while they wait.
  void clearFlags() { setFlags(false, false); }

  /// Disables all digits, or enables those within range and resolution again. What was typed or
  /// overwritten is given up; the caller shows the receiver's frequency again. A digit that holds
  /// the selection and is about to be disabled hands the focus to `FrqFocus` first.
  void LockAll(bool lock);
  /// A digit got (on) or lost the keyboard focus.
  void Focus(int index, bool on);
  /// Marks, by the digits' colours, a frequency below the channel boundary.
  void Assigned(bool below);
  /// Ends a selection: back to typed entry, or onto the Hz digit.
  void Unselect(bool toTyping);

  /// A key went down on digit `index` (0 to 8), which may move.
  void KeyDown(int& index, int& keyCode, int shift, double current, bool& committed);
  /// A character on digit `index`. One that overwrites the digit is written into the row here and
  /// left in the argument: nobody needs to write it a second time.
  void KeyPress(int& index, int& keyAscii, double current, bool& committed);
  /// A character of typed entry in kHz.
  void ProcessKey(int& keyAscii, double current, bool& committed);

  /// The row shows what the hand is setting: a number is typed, or digits of the selected row are
  /// overwritten and neither entered nor given up. An arriving frequency has to wait.
  bool EntryInProgress() const { return !typedText_.empty() || (overwritten_ && digitSelected_); }
  /// The kHz number typed so far, with "." as its point.
  const std::string& TypedText() const { return typedText_; }
  /// ":" was typed: the next frequency is a channelized one. Asking does not clear it.
  bool ChnPending() const { return chnPending_; }
  /// "D" was typed: the next frequency is a DRM channel's nominal one.
  bool DrmPending() const { return drmPending_; }

 private:
  static constexpr int kPlaces = FrqDigitControls::kPlaces;
  static constexpr int kLast = kPlaces - 1;
  static constexpr double kMost = 999'999'999;  ///< what the digits can show

  bool selectable(int index) const { return index >= firstDigit_ && index <= lastDigit_; }
  int selectedDigit() const;
  void enableDigits();
  void showAll(char c);
  void commit(bool& committed);

  void takeOverTyped();
  bool moveByKey(int& index, int keyCode);
  bool tuneByKey(int index, int keyCode, double current, bool& committed);
  void stepValue(double by, bool& committed);
  void moveTo(int& index, int next);
  int rightOf(int index) const { return index >= lastDigit_ ? firstDigit_ : index + 1; }
  int leftOf(int index) const { return index <= firstDigit_ ? lastDigit_ : index - 1; }
  void overwrite(int index, char digit);
  bool tune(double hertz, bool& committed);
  void enterDigits(bool& committed);

  void typeDigit(char digit);
  void eraseTyped();
  void enterTyped(bool& committed);
  void setFlags(bool channelized, bool drm);

  FrqDigitControls controls_;
  WindowCommands& window_;
  double maxValue_ = 29'999'999;
  double minValue_ = 0;
  std::string typedText_;
  int lastDigit_ = kLast;
  int firstDigit_ = 0;
  bool locked_ = true;
  bool digitSelected_ = false;
  bool chnPending_ = false;
  bool drmPending_ = false;
  bool overwritten_ = false;  ///< the digits are the hand's, not a receiver's
};

}  // namespace kelvane
