#pragma once

#include <string>
#include <string_view>

#include "components/sondrel/capabilities.h"
#include "components/sondrel/rigctld/rigctld_capabilities.h"

namespace kelvane::sondrel {

/// What the configuration adds to what a server tells.
struct RigctldManner {
  std::int32_t offset = 0;  ///< dB to add to the server's S-meter readings
  std::int32_t bfoLimit = 5000;
  bool preamp = true;  ///< the HF filter button switches the preamplifier
  Channel firstChannel = 0;
  Count channelCount = 0;
  bool channelSkip = false;
};

/// Between the contract's numbers and names and the protocol's, for one radio.
class RigctldMapping {
 public:
  RigctldMapping(RigctldManner manner, RigctldCapabilities can);

  Capabilities capabilities() const;

  /// The contract's number of a mode that the radio names so; -1 for one that it does not have.
  Setting mode(std::string_view name) const;
  /// The radio's name of a mode; empty where it has none.
  std::string modeName(Setting mode) const;
  Setting agc(std::int32_t code) const;
  std::int32_t agcCode(Setting agc) const;
  /// The attenuator's setting that is nearest to so many dB.
  Setting attenuator(std::int32_t decibels) const;
  std::int32_t decibels(Setting attenuator) const;
  /// The preamplifier's gain that the HF filter button stands for, dB.
  std::int32_t preamp(bool on) const;
  /// The level of an S-meter reading, dBm.
  Long level(std::int32_t strength) const;
  /// The width to ask for with a mode: what is wanted, or 0 where the server's own choice is
  /// better.
  std::int32_t width(Hz wanted) const;
  bool hasClock() const { return can_.readable.has(RigItem::Clock); }

 private:
  bool plain() const { return can_.dialect != Dialect::Extended; }
  ModeChoice modeChoice(const std::string& name) const;

  RigctldManner manner_;
  RigctldCapabilities can_;
};

}  // namespace kelvane::sondrel
