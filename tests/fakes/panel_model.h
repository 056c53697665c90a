#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>

#include "tests/fakes/marked_radios.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_receiver.h"

namespace kelvane::fakes {

/// The whole panel before eight radios that are unlike each other, played at random: keys, clicks,
/// wheel turns, tabs, things that happen at the radios, links that come and go, radios that are
/// removed, added and moved. After each step it is held against a plain model of what the operator
/// may rely on.
class PanelModel {
 public:
  explicit PanelModel(std::uint32_t seed);
  ~PanelModel();

  /// Plays so many steps. What went wrong first, with the steps that led there; empty when nothing
  /// did.
  std::string play(int steps);

 private:
  /// What a step was, as far as what may follow from it differs.
  enum class By { Hand, Radio, Link, Set, Time };

  void step();
  void hand();
  void typeOne(unsigned number);
  void pressKey(unsigned number);
  void press(int control, MouseButton button, int times);
  void chooseTab(unsigned number);
  void operatorActs(const std::string& what);
  void changeSet(unsigned number);
  void run(milliseconds time);
  void settle();

  std::string complaint();
  std::string wrongDisplay() const;
  std::string wrongValues() const;
  std::string wrongFocus() const;
  std::string wrongRequests() const;
  std::string wrongSettled();

  unsigned any(unsigned below) { return random_() % below; }
  MainView& view() const { return panel_->view(); }
  /// The mark of the radio that is shown by the panel's own word; none where there is none.
  std::optional<int> shown() const;
  bool exists(int mark) const;

  std::mt19937 random_;
  TempFolder folder_;
  HandClock clock_;
  FakeAmbrelWindows ambrelWindows_;
  std::chrono::system_clock::time_point utc_{};
  ambrel::AmbrelCore ambrel_;
  MarkedRadios radios_{[this] { return clock_.now; }};
  RecordingReceiver asked_{radios_};
  FakeWindow window_;
  FakeClipboard clipboard_;
  FakeDigits digits_;
  FakeDialogs dialogs_{window_};
  ScriptedDialogs fileDialogs_;
  FileFlows files_{fileDialogs_, fileDialogs_};
  FixedCalendar calendar_;
  MapSettings settings_;
  std::unique_ptr<MAin> panel_;

  // What is known of the present step.
  By by_ = By::Time;
  std::string said_;                ///< the step in words
  std::vector<std::string> steps_;  ///< the last of them
  std::optional<int> before_;       ///< shown before the step
  bool wasLocked_ = false;
  bool mayShowAnother_ = false;  ///< the hand chose a tab
  int expectedSteps_ = -1;       ///< how many requests the hand's clicks are; -1 for any
  std::vector<std::string> requests_;
  Instant lastHand_;
  std::array<Instant, MarkedRadios::kRadios> lastUp_;
};

}  // namespace kelvane::fakes
