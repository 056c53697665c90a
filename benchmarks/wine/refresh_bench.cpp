#include <windows.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/timing_board.h"
#include "components/ambrel/ambrel_core.h"
#include "components/sondrel/sondrel_core.h"
#include "panel/main_window.h"
#include "tests/fakes/file_dialogs.h"
#include "tests/fakes/map_settings.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "win32/component_source.h"
#include "win32/dde_servers.h"
#include "win32/system_calendar.h"

// What it costs to show another receiver, and to show another frequency: the panel on both
// components as COM objects, against the same panel on the components' cores directly; and a click
// on a tab of the real program until its caption has changed.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
using Clock = std::chrono::steady_clock;

constexpr int kTimes = 1000;
constexpr double kFrame = 16'000;  ///< us
constexpr char kInstance[] = "BenchRefresh";

struct QuietWindow : WindowCommands {
  bool active() const override { return true; }
  void focus(int) override {}
  void beep() override {}
  void runPending() override {}
  void close() override {}
  bool modalOpen() const override { return false; }
  std::int32_t handle() const override { return 0; }
};

struct NoDialogs : PanelDialogs {
  void showHelp(MiniHelp&) override {}
  void showLog(DataLog&) override {}
  void showChannel(ChannelEditor&) override {}
  void showOverview(Overview&) override {}
  void showTraces(Traces&, Keys) override {}
  void showStations(StationEditor&) override {}
  void showConfig(Config&) override {}
};

struct NoClipboard : Clipboard {
  std::string text() override { return {}; }
  void setText(const std::string&) override {}
};

struct NoSondrelWindows : sondrel::ComponentWindows {
  void setOwner(Long) override {}
  void editDrivers(sondrel::DriversModel&, const std::function<Result<>()>&) override {}
  void showSettings(Index) override {}
  void tell(const std::string&) override {}
  void askAgain(const std::string&, std::function<void()>) override {}
  bool retry(const std::string&) override { return false; }
};

struct NoAmbrelWindows : ambrel::ComponentWindows {
  void setOwner(Long) override {}
  void showKnownList(ambrel::AmbrelCore&) override {}
  void showSource(ambrel::AmbrelCore&) override {}
  void showData(ambrel::AmbrelCore&) override {}
};

void runMessages() {
  for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
}

/// Both components, open, in the form that is to be measured.
class Components {
 public:
  virtual ~Components() = default;
  virtual ReceiverComponent& receiver() = 0;
  virtual FrequencyComponent& frequency() = 0;
  virtual void listen(ReceiverListener& listener) = 0;
  virtual void hearNothing() = 0;
  /// Lets the components work and deliver events.
  virtual void pump() = 0;
};

class OverCom : public Components {
 public:
  OverCom() : receiver_(source_.receiver()), frequency_(source_.frequency()) {
    must(receiver_ && frequency_, "opening the components beside the program");
  }
  ReceiverComponent& receiver() override { return *receiver_; }
  FrequencyComponent& frequency() override { return *frequency_; }
  void listen(ReceiverListener& listener) override { connection_ = source_.listen(listener); }
  void hearNothing() override { connection_ = {}; }
  void pump() override { runMessages(); }

 private:
  win32::ComComponents source_;
  std::unique_ptr<ReceiverComponent> receiver_;
  std::unique_ptr<FrequencyComponent> frequency_;
  com::EventConnection connection_;
};

class Direct : public Components {
 public:
  explicit Direct(const std::filesystem::path& folder)
      : receiver_(
            folder, Clock::now, [] {}, sondrelWindows_),
        frequency_(
            wine::programFolder() / "data", folder, std::chrono::system_clock::now, [] {},
            ambrelWindows_) {}
  ReceiverComponent& receiver() override { return receiver_; }
  FrequencyComponent& frequency() override { return frequency_; }
  void listen(ReceiverListener& listener) override {
    receiver_.addListener(*(listener_ = &listener));
  }
  void hearNothing() override { receiver_.removeListener(*listener_); }
  void pump() override {
    receiver_.tick(Clock::now());
    receiver_.deliverEvents();
    frequency_.deliverEvents();
  }

 private:
  NoSondrelWindows sondrelWindows_;
  NoAmbrelWindows ambrelWindows_;
  sondrel::SondrelCore receiver_;
  ambrel::AmbrelCore frequency_;
  ReceiverListener* listener_ = nullptr;
};

struct Refreshes {
  Latencies receivers;
  Latencies frequencies;
};

/// Opens both components and lets all links come up.
void settle(Components& components, MAin& panel, Count receivers) {
  const auto end = Clock::now() + std::chrono::seconds(15);
  for (Count online = 0; online < receivers; Sleep(5)) {
    must(Clock::now() < end, "links that come up");
    components.pump();
    panel.tick(Clock::now());
    online = 0;
    for (Index rx = 0; rx < receivers; ++rx) online += components.receiver().IsRxOnline(rx) ? 1 : 0;
  }
}

template <class Work>
double timed(Work work) {
  const LONG64 start = counter();
  work();
  return microseconds(counter() - start);
}

void showReceivers(Components& components, MAin& panel, Count receivers, Latencies& times) {
  for (int i = 0; i < kTimes; ++i) {
    const int tab = i % receivers;
    times.add(timed([&] { panel.tabClicked(tab); }));
    const std::string name = components.receiver().GetRxName(static_cast<Index>(tab)).value();
    must(panel.view().caption.find(name) != std::string::npos, "a receiver that was selected");
    components.pump();
  }
}

void showFrequencies(Components& components, MAin& panel, Latencies& times) {
  panel.tabClicked(0);
  std::set<std::string> bands;
  for (int i = 0; i < kTimes; ++i) {
    const Hz frequency = 150'000 + i * 29'000;
    times.add(timed([&] { panel.receiverEvents().RxFrqUpdated(0, frequency, 1); }));
    bands.insert(panel.view().Band.text);
    components.pump();
  }
  must(bands.size() > 20, "bands and stations that follow the frequency");
}

Refreshes refreshesOf(Components& components) {
  const Count receivers = components.receiver().OpenRxConfig(kInstance, 0);
  must(receivers > 1, "a configuration with several receivers");
  components.frequency().OpenFrqConfig(kInstance);
  components.frequency().InitFrqPlan(0);
  QuietWindow window;
  fakes::MapSettings settings;
  NoDialogs dialogs;
  NoClipboard clipboard;
  win32::DdeServers digits;
  fakes::ScriptedDialogs fileDialogs;
  FileFlows files(fileDialogs, fileDialogs);
  const win32::SystemCalendar calendar;
  MAin panel({components.receiver(), components.frequency(), settings, window, dialogs, clipboard,
              digits, Clock::now, kInstance, files, calendar,
              std::filesystem::temp_directory_path(), fileDialogs,
              std::filesystem::temp_directory_path()});
  components.listen(panel.receiverEvents());
  settle(components, panel, receivers);
  Refreshes times;
  showReceivers(components, panel, receivers, times.receivers);
  showFrequencies(components, panel, times.frequencies);
  components.hearNothing();
  return times;
}

void printRows(const std::string& name, const Latencies& com, const Latencies& direct) {
  print({name + ", median", com.median(), "us", "the same without COM", direct.median()});
  print({name + ", worst of " + std::to_string(com.count()), com.worst(), "us", "a frame", kFrame});
}

void measureTabClick() {
  wine::Instance instance(L"BenchTabs");
  wine::RunningPanel panel(instance.name());
  must(panel.settledOn(0), "the program showing its first receiver");
  Sleep(3000);
  Latencies times;
  for (int i = 1; i <= 200; ++i) {
    const std::string before = panel.caption();
    const int tab = i % panel.tabs();
    const ULONGLONG end = GetTickCount64() + 5000;
    panel.pointAtTab(tab);
    times.add(timed([&] {
                panel.clickHere();
                while (panel.caption() == before)
                  must(GetTickCount64() < end, "a tab that was clicked");
              }) /
              1000);
    Sleep(20 + i % 30);
  }
  times.printRows("tab click to caption, real program", "ms", "a frame", kFrame / 1000);
  panel.close();
  panel.ended();
}

void measureRefreshes() {
  const wine::Instance instance(L"BenchRefresh");
  OverCom com;
  const Refreshes overCom = refreshesOf(com);
  Direct cores(instance.folder().parent_path());
  const Refreshes direct = refreshesOf(cores);
  printRows("receiver-select refresh", overCom.receivers, direct.receivers);
  printRows("display refresh", overCom.frequencies, direct.frequencies);
}

}  // namespace

int main() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const int result = measure([] {
    measureRefreshes();
    measureTabClick();
  });
  CoUninitialize();
  return result;
}
