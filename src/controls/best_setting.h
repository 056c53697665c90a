#pragma once

#include "controls/stepping.h"
#include "frequency/cls_frq_digit.h"
#include "receiver/shown_receiver.h"
#include "settings/options.h"
#include "ui/main_view.h"

namespace kelvane {

/// Whether a display refresh may change the receiver's mode and filter.
enum class Apply { No, Automatic };

/// What the frequency database says about the tuned frequency: the station or band (`Band`), the
/// offset from a known frequency (`FDif`), and the best mode and filter (`BMod`, `BFlt`).
class BestSetting {
 public:
  BestSetting(MainView& view, Stepping& stepping, ReceiverComponent& component,
              FrequencyComponent& frequency, ShownReceiver& shown, const Options& options);

  /// The display refresh for a tuned frequency. Nothing happens for a negative one, nor while
  /// another refresh runs.
  void refresh(Hz tuned, Apply apply);
  /// Shows the best mode and filter where they differ from the receiver's present ones.
  void compare();

  void applyMode();
  void applyFilter();
  /// Tunes exactly onto the known frequency that `FDif` is the offset from.
  void tuneToKnown();
  /// The region changed, and with it perhaps the band-plan entry.
  void bandName();

 private:
  void nothingKnown();
  void lookUp(Hz tuned);
  void showKnown(Hz tuned);
  void caption(const Text& text);
  void applyAutomatically();
  void useRoom();

  MainView& view_;
  Stepping& stepping_;
  ReceiverComponent& component_;
  FrequencyComponent& frequency_;
  ShownReceiver& shown_;
  const Options& options_;
  Setting bestMode_ = -1;
  Setting bestFilter_ = 0;
  Hz known_ = 0;  ///< what `FDif` is the offset from
  bool refreshing_ = false;
};

}  // namespace kelvane
