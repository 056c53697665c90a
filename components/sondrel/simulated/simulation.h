#pragma once

#include <string>
#include <vector>

#include "base/time.h"
#include "components/sondrel/capabilities.h"
#include "components/sondrel/items.h"
#include "components/sondrel/receiver_entry.h"
#include "contract/link_state.h"

namespace kelvane::sondrel {

/// What goes wrong with a simulated receiver, and how slow it is. Changed from its settings dialog
/// while it runs; the configuration file says how it starts.
struct SimulatedFaults {
  enum class Reading { Normal, Stalls, NeverStarts };

  Long code = 0;               ///< the state that each attempt to open the link ends in; 0 for none
  int healsAfter = 0;          ///< this many attempts fail, the next one comes up; 0 never heals
  milliseconds linkTime{0};    ///< that an attempt takes
  milliseconds answerTime{0};  ///< that each request takes
  std::vector<Item> refused;   ///< requests for these are refused
  bool refusesRemote = false;
  Reading reading = Reading::Normal;  ///< of the channels
  milliseconds channelTime{0};        ///< that the reading of one channel takes

  bool refuses(Item item) const;
  bool operator==(const SimulatedFaults&) const = default;
};

/// Values that a simulated receiver has and never tells, as some radios do.
struct UntoldList {
  std::vector<Item> items;
  bool meter = false;
  bool squelch = false;

  bool has(Item item) const;
};

/// A simulated receiver as its section of the configuration describes it.
struct Simulation {
  Capabilities can;
  SimulatedFaults faults;
  Hz frequency = 0;  ///< where it is when it comes up
  Setting mode = 0;
  Hz step = 0;
  Long gain = 0;        ///< of its antenna over an ordinary one, dB
  Long squelch = -120;  ///< threshold, dBm
  bool remote = true;   ///< comes up under remote control
  UntoldList untold;    ///< what it has and never tells
};

/// Reads a section; what is wrong is said in `notes` and replaced.
Simulation readSimulation(const ReceiverEntry& entry, std::vector<std::string>& notes);

/// The kind "simulated".
const ReceiverKind& simulatedKind();

}  // namespace kelvane::sondrel
