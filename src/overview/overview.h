#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "frequency/w_mouse.h"
#include "overview/receiver_watch.h"
#include "overview/setting_copy.h"
#include "overview/window_place.h"
#include "settings/settings.h"
#include "ui/clipboard.h"
#include "ui/colours.h"
#include "ui/global.h"
#include "ui/meter_bar.h"

namespace kelvane {

class Stepping;

/// What the row of one receiver shows, as plain values. What is not known is empty or below 0.
struct OverviewRow {
  /// Least, mean and greatest level of a second, tenths of a dB.
  struct Second {
    std::int16_t least = 0, mean = 0, greatest = 0;
    bool known = false, afterGap = false;
    bool operator==(const Second&) const = default;
  };

  std::string name;
  bool shown = false, remote = false, online = false;
  std::string link;  ///< the panel's words for a link that is not up
  Hz frequency = -1;
  std::string entry;     ///< what is being typed for this row
  std::string mode;      ///< with the filter: "AM 6000"
  std::string settings;  ///< AGC and attenuator: "Slow, Att 10 dB"
  std::string squelch;   ///< "SQ open", "SQ closed"
  std::string station;
  std::string reading;  ///< in S units; empty while the meter tells nothing
  Long level = 0;       ///< dBm, where there is a reading
  MeterBar bar;
  std::string movedBy;
  std::array<Second, 60> minute;  ///< the last of them is the last whole second

  bool operator==(const OverviewRow&) const = default;
};

/// The row as it is spoken: everything but what changes by itself several times a second.
std::string spokenRow(int number, const OverviewRow& row);

/// The window with a row for each receiver. All requests to a receiver need its link and remote
/// control, as on the panel. Digits, arrows and copies concern the row that has the focus.
class Overview {
 public:
  struct Services {
    ReceiverComponent& receiver;
    FrequencyComponent& frequency;
    ReceiverWatch& watch;
    const ShownReceiver& shown;
    const Stepping& stepping;
    SettingsStore& settings;
    Clipboard& clipboard;
    std::function<ColourChoice()> colours;
    std::function<void(Index)> show;              ///< in the panel
    std::function<std::string(Index)> linkWords;  ///< the panel's, for a link that is down
  };
  explicit Overview(const Services& services);

  int rows() const;
  OverviewRow row(Index rx);
  /// What the last line says: the entry that is being typed, else what was done last, else the
  /// keys.
  std::string statusLine() const;

  /// The row that has the focus, -1 while there is none.
  int focused() const { return focused_; }
  /// Another row has the focus; what was typed for the one before is dropped.
  void focus(int row);
  /// A key went down, a character was typed. Answers whether it was taken.
  bool keyDown(int keyCode, int shift);
  bool keyPress(int character);
  void show(int row);
  /// The wheel was turned over a row's frequency; positive away from the user.
  void wheel(int row, int delta);
  /// A row is dragged over another one; -1 over none. The last line says what letting go does.
  void dragOver(int from, int to);
  void dragEnded() { dragged_.clear(); }
  /// Gives the receiver of one row the setting of another's.
  void copy(int from, int to);
  void takeBack();
  bool canTakeBack() const { return !copies_.empty(); }
  /// The receivers came, went or moved.
  void receiversChanged(const ReceiverMoves& moves);

  ColourChoice colours() const { return services_.colours(); }
  bool onTop() const { return onTop_; }
  void setOnTop(bool onTop);
  WindowPlace startPlace(Global::Point owner) const;
  void leftAt(const WindowPlace& place);

 private:
  struct Copied {
    Index rx;
    SettingCopy before;
  };
  struct Station {
    Hz frequency = -1;
    WallTime asked = 0;
    std::string name;
  };

  bool exists(int row) const { return row >= 0 && row < rows(); }
  std::string name(Index rx) const { return services_.receiver.GetRxName(rx); }
  bool refused(Index rx);
  void tune(Index rx, int direction);
  void commit();
  bool command(int keyCode);
  void markSource();
  const std::string& station(Index rx, Hz frequency);
  void fillLevels(OverviewRow& row, const ReceiverWatch::Receiver& watched) const;

  Services services_;
  int focused_ = -1;
  std::string entry_;
  std::string message_;
  std::string dragged_;  ///< what letting go would do
  int source_ = -1;      ///< the row that Ctrl+C was pressed on
  std::vector<Copied> copies_;
  std::array<WMouse, kMostReceivers> wheels_;
  std::array<Station, kMostReceivers> stations_;
  bool onTop_;
};

}  // namespace kelvane
