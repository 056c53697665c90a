#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "components/ambrel/ambrel_core.h"
#include "panel/main_window.h"
#include "tests/fakes/file_dialogs.h"
#include "tests/fakes/fixed_calendar.h"
#include "tests/fakes/map_settings.h"
#include "tests/fakes/sondrel_rig.h"

namespace kelvane::fakes {

class FakeAmbrelWindows : public ambrel::ComponentWindows {
 public:
  void setOwner(Long) override {}
  void showKnownList(ambrel::AmbrelCore&) override { opened += "K"; }
  void showSource(ambrel::AmbrelCore&) override { opened += "E"; }
  void showData(ambrel::AmbrelCore&) override { opened += "D"; }

  std::string opened;  ///< one letter for each call: its key
};

/// Does with the keyboard focus what Windows does. A control that gets it takes it from another,
/// both are told at once, and its window becomes the active one; a hidden or disabled one never
/// gets it. One that is disabled while it has the focus leaves it to nobody, one that is hidden to
/// the window.
class FakeWindow : public WindowCommands {
 public:
  static constexpr int kNobody = 0;

  void focus(int control) override;
  /// Puts the panel's values on the screen.
  void show();
  /// The operator goes to another window, or comes back.
  void leave();
  void comeBack();
  bool active() const override { return active_; }
  void beep() override { ++beeps; }
  void runPending() override {
    ++pumps;
    if (pending) pending();
  }
  void close() override {}
  bool modalOpen() const override { return modal; }
  std::int32_t handle() const override { return 4711; }

  MAin* panel = nullptr;
  int focused = id::FrqFocus;
  int beeps = 0;
  int pumps = 0;
  bool modal = false;
  std::function<void()> pending;

 private:
  const Control* onScreen(int control);
  void loseFocus();

  bool active_ = true;
  MainView screen_;
};

/// An operator before the panel's dialogs: does in each what a test says, while it is open.
class FakeDialogs : public PanelDialogs {
 public:
  explicit FakeDialogs(FakeWindow& window) : window_(window) {}

  void showConfig(Config& config) override {
    ++configs;
    window_.modal = true;
    if (inConfig) inConfig(config);
    window_.modal = false;
  }
  void showChannel(ChannelEditor& editor) override {
    ++channelsShown;
    channels = &editor;
  }

  void showHelp(MiniHelp&) override { ++helps; }
  void showOverview(Overview& shown) override { overview = &shown; }
  void showTraces(Traces& shown, Keys) override {
    ++tracesShown;
    traces = &shown;
  }
  void showLog(DataLog& shown) override {
    ++logs;
    log = &shown;
  }
  void showStations(StationEditor& shown) override { stations = &shown; }

  int channelsShown = 0;
  ChannelEditor* channels = nullptr;  ///< the window that was shown
  int configs = 0;
  int helps = 0;
  int logs = 0;
  DataLog* log = nullptr;
  Overview* overview = nullptr;
  Traces* traces = nullptr;
  int tracesShown = 0;
  StationEditor* stations = nullptr;
  std::function<void(Config&)> inConfig;

 private:
  FakeWindow& window_;
};

class FakeClipboard : public Clipboard {
 public:
  std::string text() override { return held; }
  void setText(const std::string& text) override { held = text; }

  std::string held;
};

/// Servers of digits that do what a test says.
class FakeDigits : public DigitServers {
 public:
  void setListener(std::function<void(Index, const std::string&)> to) override {
    send = std::move(to);
  }
  void link(const std::vector<std::string>& names) override { servers = names; }
  void refresh() override { ++refreshes; }
  DigitLink state(Index rx) const override {
    return static_cast<std::size_t>(rx) < servers.size() ? answer : DigitLink::Closed;
  }

  std::function<void(Index, const std::string&)> send;
  std::vector<std::string> servers;
  DigitLink answer = DigitLink::Waiting;
  int refreshes = 0;
};

/// The whole panel on both components' real cores, with a clock, a window and settings of a test's
/// own.
class PanelRig {
 public:
  /// The four receivers of a new instance, or those of a configuration.
  explicit PanelRig(const std::string& receivers = {});
  ~PanelRig();
  PanelRig(const PanelRig&) = delete;
  PanelRig& operator=(const PanelRig&) = delete;

  /// Starts the panel and lets the links come up.
  MAin& start(milliseconds settle = milliseconds(3000));

  /// Lets time pass for the component and the panel, everything at the moment when it is due.
  void run(milliseconds time);
  void type(std::string_view characters);
  void press(int keyCode, int shift = 0);
  void click(int control, MouseButton button = MouseButton::Left);
  /// A hand at a simulated receiver's own tuning knob.
  void turnKnob(Index rx, Hz frequency);
  std::string digits() const;
  MainView& view() const { return panel->view(); }
  /// The wall clock goes with the other one.
  WallTime wallTime() const {
    const auto gone = sondrel.clock.now.time_since_epoch();
    return 1'800'000'000'000 + std::chrono::duration_cast<milliseconds>(gone).count();
  }
  /// Where the panel keeps files of its own.
  std::filesystem::path folder() const { return sondrel.folder.path() / "panel"; }
  /// Lets the panel's files reach the disk, and the panel hear of it.
  void finishWriting();
  ReceiverComponent& receiver() { return wrapped ? *wrapped : sondrel.core; }

  SondrelRig sondrel;
  FakeAmbrelWindows ambrelWindows;
  std::chrono::system_clock::time_point utc{};
  ambrel::AmbrelCore ambrel{KELVANE_DATA_FOLDER, sondrel.folder.path() / "frequency",
                            [this] { return utc; }, [] {}, ambrelWindows};
  FakeWindow window;
  FakeClipboard clipboard;
  FakeDigits digitServers;
  FakeDialogs dialogs{window};
  ScriptedDialogs fileDialogs;
  FileFlows files{fileDialogs, fileDialogs};
  FixedCalendar calendar;
  MapSettings settings;
  std::shared_ptr<FileSteps> disk = std::make_shared<FileSteps>();
  /// Stands between panel and component where a test wants one; set before start().
  std::unique_ptr<ReceiverComponent> wrapped;
  FrequencyComponent* plan = &ambrel;
  std::unique_ptr<MAin> panel;
  bool keptAwake = false;
};

}  // namespace kelvane::fakes
