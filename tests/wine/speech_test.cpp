#include <windows.h>

#include <map>
#include <utility>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr DWORD kLiveRegionChanged = 0x8019;

/// What a screen reader hears of a running program: the events of its windows, as they come.
class Listener {
 public:
  explicit Listener(DWORD process) {
    for (const DWORD event :
         {DWORD{EVENT_OBJECT_FOCUS}, DWORD{EVENT_OBJECT_NAMECHANGE}, kLiveRegionChanged})
      hooks_.push_back(
          SetWinEventHook(event, event, nullptr, note, process, 0, WINEVENT_OUTOFCONTEXT));
    heard_.clear();
  }
  ~Listener() {
    for (const HWINEVENTHOOK hook : hooks_) UnhookWinEvent(hook);
  }

  /// Listens for a while; how often the window raised the event in that time.
  int count(DWORD event, HWND window, int milliseconds) {
    heard_.clear();
    eventually(
        [] {
          MSG message;
          while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
          return false;
        },
        milliseconds);
    return heard_[{event, window}];
  }

 private:
  static void CALLBACK note(HWINEVENTHOOK, DWORD event, HWND window, LONG, LONG, DWORD, DWORD) {
    ++heard_[{event, window}];
  }

  // The system hands the callback nothing of ours.
  static inline std::map<std::pair<DWORD, HWND>, int> heard_;
  std::vector<HWINEVENTHOOK> hooks_;
};

TEST(Speech, AnnouncesAFrequencyOnceItRestsAndMovesOfAGridsCell) {
  const Instance instance(L"TestSpeech");
  std::filesystem::create_directories(instance.folder());
  RunningPanel panel(instance.name(), programFolder(), instance.folder());
  ASSERT_TRUE(panel.settledOn(0));
  Listener listener(panel.processId());
  const HWND announced = panel.control(id::Announced);
  listener.count(kLiveRegionChanged, announced, 2500);
  EXPECT_EQ(listener.count(kLiveRegionChanged, announced, 2500), 0) << "nothing happens";

  panel.type("7050\r");
  for (int step = 0; step < 10; ++step) panel.key(VK_RIGHT);
  panel.type("6085\r");
  EXPECT_EQ(listener.count(kLiveRegionChanged, announced, 3000), 1);
  EXPECT_EQ(panel.text(id::Announced), "6085 kHz");

  panel.type(" ");
  HWND log = nullptr;
  ASSERT_TRUE(eventually([&] { return (log = panel.findWindow(L"KelvaneLog")) != nullptr; }));
  ASSERT_TRUE(giveKeyboard(log));
  const HWND grid = GetDlgItem(log, id::PadGrd);
  listener.count(EVENT_OBJECT_FOCUS, grid, 500);
  panel.keyHere(VK_LEFT);
  panel.keyHere(VK_LEFT);
  EXPECT_EQ(listener.count(EVENT_OBJECT_FOCUS, grid, 500), 2) << "one for each cell";
  EXPECT_EQ(listener.count(EVENT_OBJECT_FOCUS, grid, 500), 0);
}

}  // namespace
}  // namespace kelvane::wine
