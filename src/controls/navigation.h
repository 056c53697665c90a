#pragma once

#include "controls/best_setting.h"
#include "controls/refusal.h"

namespace kelvane {

/// What one step of navigation walks through.
enum class Walk { Bands, Known, InSet, Sets };

/// Steps through the band plan and the known frequencies, and the labels that tell where in them
/// the receiver is. A step tunes and sets mode and filter, whatever the automatic options say.
class Navigation {
 public:
  Navigation(MainView& view, ReceiverComponent& component, FrequencyComponent& frequency,
             ShownReceiver& shown, BestSetting& best, WindowCommands& window, Refusal& refusal);

  /// Direction 1 for next, -1 for previous. At the end of what is walked nothing is tuned and the
  /// refusal signal sounds; frequencies that the receiver cannot tune are passed over.
  void step(Walk walk, Long direction);
  /// Tunes to a frequency that was chosen by itself, with mode and filter; false where the receiver
  /// cannot.
  bool tuneTo(Hz frequency, Setting mode, Setting filter);
  /// Empties the labels of the place in the known frequencies.
  void clearBank();
  /// The next region of the ITU.
  void nextRegion();
  /// The kept region may have been read only after the start.
  void showRegion();

 private:
  struct Target {
    Hz frequency;
    Setting mode;
    Setting filter;
  };
  bool reachable(Hz frequency) const;
  bool nextBand(Long direction, Target& target);
  bool nextKnown(Walk walk, Long direction, Hz from, Target& target);
  FrqRecord record(Walk walk, Long direction);
  void showBank(const FrqRecord& at);
  void tune(const Target& target);

  MainView& view_;
  ReceiverComponent& component_;
  FrequencyComponent& frequency_;
  ShownReceiver& shown_;
  BestSetting& best_;
  WindowCommands& window_;
  Refusal& refusal_;
  Long region_ = -1;  ///< the shown one
};

}  // namespace kelvane
