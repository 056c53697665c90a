#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <new>
#include <string>
#include <vector>

#include "base/safe_file.h"
#include "components/ambrel/ambrel_core.h"
#include "tests/fakes/temp_folder.h"
#include "tests/fakes/unwaiting_disk.h"

namespace kelvane::ambrel {

struct NoWindows : ComponentWindows {
  void setOwner(Long) override {}
  void showKnownList(AmbrelCore&) override {}
  void showSource(AmbrelCore&) override {}
  void showData(AmbrelCore&) override {}
  void askAgain(const std::string& words, std::function<void()> again) override {
    asked.push_back(words);
    chooseRetry = std::move(again);
  }

  std::vector<std::string> asked;  ///< with Retry and Cancel
  std::function<void()> chooseRetry;
};

struct HeardEvents : FrequencyListener {
  void FrqSelected(Hz frequency, Setting mode, Setting filter) override {
    selected.push_back({frequency, mode, filter});
  }
  void FrqDataUpdated() override { ++dataUpdated; }

  struct Selected {
    Hz frequency;
    Setting mode;
    Setting filter;
  };
  std::vector<Selected> selected;
  int dataUpdated = 0;
};

/// Counts wakes, from any thread.
class Wakes {
 public:
  void wake() {
    const std::lock_guard lock(mutex_);
    ++count_;
    woken_.notify_all();
  }
  /// Waits for one wake; false when none comes for a very long time.
  bool wait() {
    std::unique_lock lock(mutex_);
    const bool came = woken_.wait_for(lock, std::chrono::minutes(2), [this] { return count_ > 0; });
    if (came) --count_;
    return came;
  }
  bool any() {
    const std::lock_guard lock(mutex_);
    return count_ > 0;
  }

 private:
  std::mutex mutex_;
  std::condition_variable woken_;
  int count_ = 0;
};

inline std::filesystem::path shippedData() { return KELVANE_DATA_FOLDER; }

/// A frequency component with folders of its own and a clock that the test sets.
class AmbrelPlay {
 public:
  /// Begins with no shipped texts at all, or with those of the program.
  explicit AmbrelPlay(bool shipped = false) : shipped_(shipped) { start(); }

  /// Ends the program and starts it again.
  void start() {
    core.reset();
    core = std::make_unique<AmbrelCore>(
        shipped_ ? shippedData() : dataFolder(), userFolder(), [this] { return now; },
        [this] {
          if (wakeThrows.exchange(false)) throw std::bad_alloc();
          wakes.wake();
        },
        windows, disk);
    core->addListener(events);
    core->OpenFrqConfig("Shack");
    core->InitFrqPlan(0);
  }

  std::filesystem::path dataFolder() const { return folder_.path() / "data"; }
  std::filesystem::path userFolder() const { return folder_.path() / "user"; }
  std::filesystem::path ownFolder() const { return userFolder() / "Shack"; }

  std::filesystem::path write(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

  void setTime(int year, unsigned month, unsigned day, int hour, int minute, int second = 0) {
    now = std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) /
                                static_cast<int>(day)) +
          std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
  }

  /// Lets the component do what it posts, until an asynchronous load has ended.
  void deliver() {
    ASSERT_TRUE(wakes.wait());
    core->deliverEvents();
  }

  /// Imports a schedule file and answers the component's words about it.
  std::string import(const std::filesystem::path& file) {
    if (!core->importSchedule(file)) return "refused to begin";
    while (core->isLoading() && wakes.wait()) core->deliverEvents();
    return core->loadWords();
  }
  std::string importText(const std::string& lines, const std::string& name = "sked-a22.csv") {
    return import(write(folder_.path() / name, heading + lines));
  }

  /// What the panel would show at a frequency: name, info and extra; empty when nothing is known.
  std::string shown(Hz frequency, Hz tolerance = 0) {
    core->SetFrqFrequency(frequency);
    if (!core->FindRxKnownFrequency(frequency, tolerance)) return {};
    return core->GetFrqKnownName().value() + " - " + core->GetFrqKnownInfo().value() + " " +
           core->GetFrqKnownExtra().value();
  }
  std::string name(Hz frequency, Hz tolerance = 0) {
    core->SetFrqFrequency(frequency);
    if (!core->FindRxKnownFrequency(frequency, tolerance)) return {};
    return core->GetFrqKnownName();
  }
  bool onAir(Hz frequency) {
    const std::string text = shown(frequency);
    EXPECT_FALSE(text.empty()) << frequency;
    return text.find("not on the air now") == std::string::npos;
  }

  const std::string heading =
      "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135;P:35;Start:60;"
      "Stop:60;\r\n";
  std::chrono::system_clock::time_point now =
      std::chrono::sys_days(std::chrono::year(2022) / 7 / 13);
  NoWindows windows;
  std::shared_ptr<FileSteps> disk = std::make_shared<fakes::UnwaitingDisk>();
  HeardEvents events;
  std::atomic<bool> wakeThrows = false;  ///< the next wake does
  Wakes wakes;

 private:
  fakes::TempFolder folder_;
  bool shipped_;

 public:
  std::unique_ptr<AmbrelCore> core;
};

}  // namespace kelvane::ambrel
