#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/file_saver.h"
#include "base/wall_time.h"
#include "companions/config.h"
#include "companions/mini_help.h"
#include "controls/navigation.h"
#include "controls/utc_clock.h"
#include "frequency/dde_link.h"
#include "frequency/w_mouse.h"
#include "panel/frq_events.h"
#include "panel/key_commands.h"
#include "panel/last_writes.h"
#include "panel/rx_events.h"
#include "receiver/announcer.h"
#include "settings/options.h"
#include "ui/control_events.h"
#include "ui/control_ids.h"
#include "ui/keyboard.h"
#include "ui/message_boxes.h"

namespace kelvane {

class Calendar;
class ChannelEditor;
class DataLog;
class StationEditor;
class FileFlows;
class Overview;
class StationViews;
class Traces;

/// The dialogs that the main window opens.
class PanelDialogs {
 public:
  virtual ~PanelDialogs() = default;
  /// Shows the options dialog over the main window; returns when it is closed.
  virtual void showConfig(Config& config) = 0;
  /// Opens the card of keyboard commands, or brings it to the front, and returns at once.
  virtual void showHelp(MiniHelp& help) = 0;
  /// Opens the station log's window as the log is now, or brings it to the front, and returns at
  /// once.
  virtual void showLog(DataLog& log) = 0;
  /// Shows the channel window beside the main window, or brings it to the front; returns at once.
  virtual void showChannel(ChannelEditor& editor) = 0;
  /// Shows the window with a row for each receiver, or brings it to the front; returns at once.
  virtual void showOverview(Overview& overview) = 0;
  /// The same for the window with the receivers' levels. Without the keyboard where something has
  /// to be told that nobody asked for.
  enum class Keys { Take, Leave };
  virtual void showTraces(Traces& traces, Keys keys) = 0;
  /// Opens the window of the operator's own stations, or brings it to the front; returns at once.
  virtual void showStations(StationEditor& editor) = 0;
};

/// What the main window stands on.
struct PanelServices {
  ReceiverComponent& receiver;
  FrequencyComponent& frequency;
  SettingsStore& settings;
  WindowCommands& window;
  PanelDialogs& dialogs;
  Clipboard& clipboard;
  DigitServers& digits;
  std::function<Instant()> now;
  std::string instance;  ///< that the components' configuration and the settings go by
  FileFlows& files;
  const Calendar& calendar;
  std::filesystem::path folder;  ///< the program's current one at its start: the log lies there
  MessageBoxes& boxes;
  std::filesystem::path ownFolder;  ///< where the instance keeps files of its own
  /// Saves what a listener sends along who asks for help; answers where it is, for the operator.
  std::function<std::string()> saveReport = {};
  std::shared_ptr<FileSteps> disk = std::make_shared<FileSteps>();
  std::function<WallTime()> wallTime = [] { return WallTime{0}; };
  std::function<void(bool)> keepAwake = {};  ///< whether the computer may not sleep
  std::function<void()> wakeWork = {};       ///< from any thread: asks for workEnded() soon
};

/// A window's place on the desktop, in twips.
struct Placement {
  std::int32_t left = 0, top = 0, width = 0, height = 0;

  bool operator==(const Placement&) const = default;
};

/// The main window: the receiver front panel. Owns the panel's units and hands each event of the
/// window to the one that it concerns. All calls come on the user-interface thread.
class MAin : public ControlEvents {
 public:
  /// Both components are open and at least one receiver is configured. Builds the tabs, selects the
  /// first receiver and starts the timers.
  explicit MAin(const PanelServices& services);
  ~MAin() override;

  MainView& view() { return view_; }
  const Options& options() const { return options_; }
  ReceiverListener& receiverEvents() { return events_; }
  FrequencyListener& frequencyEvents() { return frqEvents_; }

  /// Where the window was when it was last closed; only left and top are restored.
  Placement startPlace() const;

  void gotFocus(int control) override;
  void lostFocus(int control) override;
  void keyDown(int control, int keyCode, int shift) override;
  void keyPress(int control, int character) override;
  void clicked(int control, MouseButton button) override;
  /// Keys and characters of the whole window, before the control with the focus sees them. Answer
  /// whether they were taken: the control is not told then.
  bool previewKeyDown(int keyCode, int shift, int focused);
  bool previewKeyPress(int character, int focused);
  /// A turn of the mouse wheel, positive away from the user; 120 is a notch.
  void wheel(int delta);
  /// The windows beside the main one, for whoever has one to offer.
  Companions& companions() { return companions_; }
  const std::string& CommandPrefix() const { return keys_.CommandPrefix(); }
  void tabClicked(int tab);
  /// The operator pressed a key or a button of the mouse, or turned the wheel, in any of the
  /// program's windows: for a while nothing but his hand changes what is shown.
  void handMoved() { tabs_.handMoved(services_.now()); }
  /// Alt and a character. Answers whether a tab or a button took it.
  bool accelerator(char32_t character);
  /// The window became the active one.
  void activated() { keyboard_.focus(id::FrqFocus); }
  /// Changed values are about to be put on the screen.
  void settleFocus() { keyboard_.settle(); }

  /// Work beside the window has ended.
  void workEnded();
  /// Time has passed.
  void tick(Instant now);
  /// When `tick` has something to do next.
  Instant nextDue() const;

  /// Returns when every file is written that is on its way to the disk.
  void finishWriting();

  /// The operator ends the program: asks what becomes of unsaved edits. False where he would rather
  /// go on.
  bool mayEnd();
  /// Writes what is not on the disk yet, closes the companion windows and every receiver's link in
  /// order, and saves where the window was. Asks what to do with what cannot be written, unless the
  /// system ends.
  void unload(const Placement& place, Ending how = Ending::ByOperator);

 private:
  ReceiverUnits units();
  std::unique_ptr<StationViews> makeViews();
  void provideCompanions();
  void openLog(bool updateOnly);
  std::vector<LastWrite> lastWrites();
  Result<> saveSettings(const Placement& place);
  void announce();
  /// What is held for other programs while the shown receiver does not answer; empty for nothing.
  std::string whyNotUp() const;
  std::string spokenFault() const;
  std::string heldForPrograms() const;
  bool commands(int control) const;
  void act(int control, MouseButton button);
  bool pressFocused(int character, int focused);
  void clickedArray(int control, MouseButton button);
  void Config_Click();
  void showOptions();

  static constexpr milliseconds kBlink{800};

  PanelServices services_;
  Options options_;
  MainView view_;
  Keyboard keyboard_;
  Refusal refusal_;
  ShownReceiver shown_;
  clsFrqDigit row_;
  clsModEvent buttons_;
  FrqEntry entry_;
  Indicators indicators_;
  LevelBars levels_;
  Companions companions_;
  Openers openers_;
  FocusGroups groups_;
  RemoteState remote_;
  StatusBox status_;
  LinkRetry retry_;
  Forwarding forwarding_;
  Stepping stepping_;
  BestSetting best_;
  Navigation navigation_;
  ChannelStep channels_;
  Channelized channelized_;
  HfFilter hfFilter_;
  BfoLabel bfo_;
  DdeLink dde_;
  UtcClock utc_;
  Announcer announcer_;
  ReceiverRefresh refresh_;
  ReceiverTabs tabs_;
  FileSaver saver_;
  std::unique_ptr<ChannelEditor> channelEditor_;
  std::unique_ptr<DataLog> log_;
  std::unique_ptr<StationViews> views_;
  std::unique_ptr<StationEditor> stations_;
  RxEvents events_;
  Hz spoken_ = -1;             ///< the frequency to be announced
  Index spokenReceiver_ = -1;  ///< and its receiver
  FrqEvents frqEvents_;
  KeyCommands keys_;
  WMouse wheel_;
  Config config_;
  MiniHelp help_;
  Timer TimBlk_;
};

}  // namespace kelvane
