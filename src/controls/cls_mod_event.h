#pragma once

#include <array>

#include "contract/components.h"
#include "ui/control.h"
#include "ui/shared_width.h"

namespace kelvane {

/// The five buttons that show mode, filter, AGC, attenuator and noise blanker, and step each on by
/// a click. Which values there are, what they are called and which comes next is the component's.
class clsModEvent {
 public:
  static constexpr int kButtons = 5;
  enum Button : int { Mode, Filter, Agc, Attenuator, NoiseBlanker };

  clsModEvent(std::array<Control, kButtons>& buttons, ReceiverComponent& oReceiver);

  void LockAll(bool lock);
  /// Width of each button when `total` is shared out, to the nearest whole unit; button i starts at
  /// i times the width.
  static constexpr int Width(int total) { return sharedWidth(total, kButtons); }
  /// The captions were another receiver's: until something is known they say so.
  void otherReceiver();
  /// Brings all five up to date for a receiver. What the component fails to answer is passed over.
  void Update(Index rx);
  /// Whether there is a filter to choose, which goes by the mode.
  void filterChoice(Index rx);
  /// Asks the receiver to step a setting on; the caption follows with the component's event.
  Outcome Click(Index rx, int button);

  // A value of -1 is unknown and leaves the caption as it was.
  void ModUpdated(Index rx, Setting mode);
  void FilterUpdated(Index rx, Setting filter);
  void AgcUpdated(Index rx, Setting agc);
  void NBlUpdated(Index rx, Setting blanker);
  void AttUpdated(Index rx, Setting attenuator, Long db);

 private:
  std::array<Control, kButtons>& buttons_;
  ReceiverComponent& oReceiver_;
};

}  // namespace kelvane
