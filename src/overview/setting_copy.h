#pragma once

#include <string>

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

/// Gives a receiver a setting. Answers in words what it could not take of it, or why it took
/// nothing; empty where it took all.
struct Applied {
  bool done = false;
  std::string missing;
};
Applied applySetting(ReceiverComponent& component, Index rx, const SettingCopy& setting);

/// A frequency in kHz with three decimal places ("7123.400").
std::string kilohertzText(Hz frequency);

/// Why a receiver takes no commands now, in words; empty where it does.
std::string whyLocked(ReceiverComponent& component, Index rx);
/// Why a receiver cannot be tuned to a frequency, in words; empty where it can.
std::string whyNotTuned(ReceiverComponent& component, Index rx, double hertz);

}  // namespace kelvane
