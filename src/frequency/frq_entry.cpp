#include "frequency/frq_entry.h"

#include "base/number.h"

namespace kelvane {

FrqEntry::Limits FrqEntry::limits() const {
  const Index rx = shown_.index();
  const Hz finest = component_.GetRxMinStep(rx);
  return {component_.GetRxFrqMax(rx), component_.GetRxFrqMin(rx),
          finest > 0 ? finest : component_.GetRxMaxStep(rx).value()};
}

void FrqEntry::receiverSelected() {
  const Limits now = limits();
  if (taken_ == now) return;
  const bool sameReceiver = taken_.has_value();
  taken_ = now;
  row_.Boundary(now.max, now.min, now.resolution);
  if (sameReceiver) return;
  row_.clearFlags();
  lockKnown_ = false;
}

void FrqEntry::lock(bool locked) {
  // What was typed ahead of remote control that did not come is given up.
  const bool leftOver = locked && row_.EntryInProgress();
  if (lockKnown_ && locked == locked_ && !leftOver) return;
  lockKnown_ = true;
  locked_ = locked;
  row_.LockAll(locked);
  arrived(present());
}

void FrqEntry::arrived(Hz frequency) {
  if (!row_.EntryInProgress()) row_.Value(frequency);
}

void FrqEntry::send(bool committed, bool channelized) {
  if (committed && !shown_.locked())
    component_.SetRxFrequency(shown_.index(), channelized, nearestLong(row_.Value()));
}

void FrqEntry::afterKey(bool committed, bool wasInProgress) {
  // What arrived meanwhile was held back; after a commit the receiver's answer comes anyway.
  if (wasInProgress && !committed) arrived(present());
}

void FrqEntry::FrqDigit_GotFocus(int index) { row_.Focus(index, true); }

void FrqEntry::FrqDigit_LostFocus(int index) { row_.Focus(index, false); }

void FrqEntry::FrqDigit_KeyDown(int index, int keyCode, int shift) {
  bool committed = false;
  row_.KeyDown(index, keyCode, shift, present(), committed);
  send(committed, false);
}

void FrqEntry::FrqDigit_KeyPress(int index, int keyAscii) {
  bool committed = false;
  row_.KeyPress(index, keyAscii, present(), committed);
  send(committed, false);
}

void FrqEntry::FrqFocus_GotFocus() {
  // Digits that were overwritten and not entered are given up when the row is left.
  arrived(present());
}

FrqEntry::Typed FrqEntry::typed(int keyAscii) {
  if (shown_.locked()) return Typed::NotTaken;
  const bool typing = row_.EntryInProgress();
  bool committed = false;
  row_.ProcessKey(keyAscii, present(), committed);
  if (committed) send(true, row_.Chn());
  afterKey(committed, typing);
  if (committed) return Typed::Committed;
  return keyAscii == 0 ? Typed::Taken : Typed::NotTaken;
}

}  // namespace kelvane
