#pragma once

#include <string>
#include <vector>

#include "components/sondrel/sondrel_core.h"
#include "tests/fakes/hand_clock.h"
#include "tests/fakes/recording_listener.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {

// The receivers of a new list.
constexpr Index kHarrow = 0;  // 1 to 29 999 999 Hz in steps of 1
constexpr Index kQuill = 1;   // 10 000 to 999 999 999 Hz in steps of 10
constexpr Index kTern = 2;    // 1 600 000 to 4 200 000 Hz in steps of 100
constexpr Index kLoom = 3;    // 150 000 to 26 100 000 Hz in steps of 1000

}  // namespace kelvane

namespace kelvane::fakes {

/// The component's windows, opened by nobody: remembers what was asked.
class FakeSondrelWindows : public sondrel::ComponentWindows {
 public:
  void setOwner(Long window) override { owner = window; }
  void editDrivers(sondrel::DriversModel& model, const std::function<Result<>()>& apply) override {
    ++edits;
    if (edit) edit(model, apply);
  }
  void showSettings(Index rx) override { shown.push_back(rx); }
  void tell(const std::string& words) override { told.push_back(words); }
  void askAgain(const std::string& words, std::function<void()> again) override {
    asked.push_back(words);
    chooseRetry.push_back(std::move(again));
  }
  bool retry(const std::string& words) override {
    asked.push_back(words);
    return retries-- > 0;
  }

  Long owner = 0;
  int edits = 0;
  std::function<void(sondrel::DriversModel&, const std::function<Result<>()>&)> edit;
  std::vector<Index> shown;
  std::vector<std::string> told;
  std::vector<std::string> asked;                  ///< with Retry and Cancel
  std::vector<std::function<void()>> chooseRetry;  ///< of those that are asked beside the window
  int retries = 0;  ///< how often the operator chooses Retry before he gives up
};

/// The receiver component's real core on a hand-driven clock, in a folder of its own, with a
/// listener that writes down its events.
class SondrelRig {
 public:
  explicit SondrelRig(std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>())
      : SondrelRig({}, std::move(steps)) {}
  /// On the files of another rig, as another process is.
  explicit SondrelRig(const std::filesystem::path& shared,
                      std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>())
      : dataFolder(shared.empty() ? folder.path() : shared),
        core(
            dataFolder, [this] { return clock.now; }, [this] { ++wakes; }, windows,
            std::move(steps)),
        listener(&core) {
    core.addListener(listener);
  }

  std::filesystem::path instanceFolder(const std::string& instance = "Kelvane") const {
    return dataFolder / pathFromText(instance);
  }
  std::filesystem::path configPath() const { return instanceFolder() / "receivers.txt"; }
  /// What the configuration file holds when the instance is opened: sections without the head.
  void configure(const std::string& sections) {
    writeFileSafely(configPath(), "Version=1\r\n" + sections);
  }
  /// Opens the instance and lets the links come up that take no time.
  Count open(const std::string& instance = "Kelvane") {
    const Count count = core.OpenRxConfig(instance, 0);
    pump();
    return count;
  }
  /// Does what is due now, as the component's message loop would.
  void pump() {
    core.tick(clock.now);
    core.deliverEvents();
  }
  /// Lets time pass, everything being done at the moment when it is due.
  void run(milliseconds time) {
    const Instant end = clock.now + time;
    for (;;) {
      clock.now = std::min(std::max(core.nextDue(), clock.now), end);
      pump();
      if (clock.now >= end && core.nextDue() > end) return;
    }
  }

  TempFolder folder;
  std::filesystem::path dataFolder;
  HandClock clock;
  int wakes = 0;
  FakeSondrelWindows windows;
  sondrel::SondrelCore core;
  RecordingListener listener;
};

}  // namespace kelvane::fakes
