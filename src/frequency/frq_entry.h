#pragma once

#include <optional>

#include "frequency/cls_frq_digit.h"
#include "receiver/shown_receiver.h"

namespace kelvane {

/// The main window's side of the digit row: hands it keys together with the receiver's present
/// frequency, sends what it commits, and holds arriving frequencies back while the hand is at work.
class FrqEntry {
 public:
  FrqEntry(clsFrqDigit& row, ReceiverComponent& component, ShownReceiver& shown)
      : row_(row), component_(component), shown_(shown) {}

  /// Another receiver is shown from now on; what was typed was meant for the former one.
  void otherReceiver() { taken_.reset(); }
  /// Takes over the limits of the shown receiver. They may change while a number is typed for it:
  /// that one stays, and is held against them when it is entered.
  void receiverSelected();
  /// Locks or unlocks the row; what is typed is lost only when the lock really changes.
  void lock(bool locked);
  /// A frequency arrived from the shown receiver; -1 for none. While an entry is in progress the
  /// row keeps what the hand set.
  void arrived(Hz frequency);
  /// The operator is in the middle of something that another receiver must not interrupt.
  bool busy() const { return row_.EntryInProgress() || row_.Processed(); }

  void FrqDigit_GotFocus(int index);
  void FrqDigit_LostFocus(int index);
  void FrqDigit_KeyDown(int index, int keyCode, int shift);
  void FrqDigit_KeyPress(int index, int keyAscii);
  void FrqFocus_GotFocus();
  void FrqFocus_KeyPress(int keyAscii) { typed(keyAscii); }

  enum class Typed { NotTaken, Taken, Committed };
  /// A character for typed entry in kHz; a frequency that it completes is sent.
  Typed typed(int keyAscii);

 private:
  struct Limits {
    Hz max = 0;
    Hz min = 0;
    Hz resolution = 0;
    bool operator==(const Limits&) const = default;
  };
  Limits limits() const;
  Hz present() const {
    return shown_.exists() ? component_.GetRxFrequency(shown_.index(), kTuned).value() : -1;
  }
  void send(bool committed, bool channelized);
  void afterKey(bool committed, bool wasInProgress);

  clsFrqDigit& row_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  std::optional<Limits> taken_;  ///< none while they are another receiver's
  bool locked_ = true;
  bool lockKnown_ = false;
};

}  // namespace kelvane
