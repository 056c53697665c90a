#pragma once

#include <string>

#include "base/result.h"
#include "contract/components.h"

namespace kelvane {

/// A receiver's setting as another one can take it: what it does not have or tell is left out, and
/// modes and AGC go by their names, since each receiver numbers its own.
struct SettingCopy {
  Hz frequency = -1;
  Text mode, agc;      ///< empty: not known
  Setting filter = 0;  ///< Hz; 0: not known

  bool operator==(const SettingCopy&) const = default;
};

SettingCopy settingOf(ReceiverComponent& component, Index rx);

/// Gives a receiver a setting. Answers in words what of it the receiver could not take, mostly
/// nothing; fails where it took nothing.
Result<std::string> applySetting(ReceiverComponent& component, Index rx,
                                 const SettingCopy& setting);

/// A frequency in kHz with three decimal places ("7123.400").
std::string kilohertzText(Hz frequency);

/// Whether a receiver takes commands now.
Result<> checkTakesCommands(ReceiverComponent& component, Index rx);
/// Whether a receiver can be tuned to a frequency.
Result<> checkReaches(ReceiverComponent& component, Index rx, double hertz);

}  // namespace kelvane
