#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "overview/overview.h"
#include "overview/traces.h"

namespace kelvane {

/// All receivers at once: what their events told, and the two windows that show it.
class StationViews {
 public:
  struct Services {
    ReceiverComponent& receiver;
    FrequencyComponent& frequency;
    const ShownReceiver& shown;
    const LevelBars& levels;
    const Forwarding& forwarding;
    const Stepping& stepping;
    SettingsStore& settings;
    Clipboard& clipboard;
    FileFlows& files;
    FileSaver& saver;
    Clocks clocks;
    std::filesystem::path levelsFolder;           ///< where levels are recorded
    std::function<void(bool)> keepAwake;          ///< whether the computer may not sleep
    std::function<ColourChoice()> colours;        ///< to draw with
    std::function<void(Index)> show;              ///< a receiver in the panel
    std::function<std::string(Index)> linkWords;  ///< the panel's, for a link that is down
    std::function<void()> tellTrouble;            ///< the traces' window says what went wrong
  };
  explicit StationViews(const Services& services);

  ReceiverWatch& watch() { return watch_; }
  Overview& overview() { return overview_; }
  Traces& traces() { return traces_; }
  void receiversChanged(const ReceiverMoves& moves);
  void tick(Instant now);
  Instant nextDue() const { return recorder_.nextDue(); }
  /// The program ends: what was recorded is written.
  void end() { recorder_.stop(); }

 private:
  ReceiverWatch watch_;
  LevelRecorder recorder_;
  Overview overview_;
  Traces traces_;
  std::function<void()> tellTrouble_;
};

}  // namespace kelvane
