#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "frequency/key_commands.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr int kShift = 1, kCtrl = 2, kAlt = 4;
/// The log lies where the program is started.
const std::filesystem::path kLogFolder = std::filesystem::temp_directory_path();

/// One row of the keyboard language: real keys, and what is seen of them in the program.
struct Line {
  std::string keys;  ///< as the table of commands names them
  std::function<void()> press;
  std::function<bool()> seen;
};

/// A running program on 10 000 300 Hz with a step of 2500 Hz, and the script of all its keys.
class KeyScript : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(panel_.settledOn(0));
    type("10000.3\r");
    ASSERT_TRUE(shows(" 10000300"));
  }

  void TearDown() override { std::filesystem::remove(kLogFolder / L"scratchpad.txt"); }

  void type(const std::string& keys) { panel_.type(keys); }
  std::function<void()> typed(const std::string& keys) {
    return [this, keys] { type(keys); };
  }
  std::function<void()> key(WORD code, int modifiers = 0) {
    return [this, code, modifiers] { panel_.key(code, modifiers); };
  }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_.digits() == digits; }, 3000);
  }
  std::function<bool()> on(const std::string& digits) {
    return [this, digits] { return shows(digits); };
  }
  std::function<bool()> reads(int control, const std::string& text) {
    return [this, control, text] {
      return eventually([&] { return panel_.text(control) == text; }, 3000);
    };
  }
  std::function<bool()> appears(int control) {
    return [this, control] { return eventually([&] { return panel_.visible(control); }, 3000); };
  }
  /// The digits are others than before the key.
  std::function<bool()> tunes() {
    return [this] { return eventually([this] { return panel_.digits() != before_; }, 3000); };
  }
  std::function<bool()> walks() {
    return [this] { return tunes()() && reads(id::IBank, "Kf")(); };
  }
  /// Num Lock is on: the keypad's 7 is a digit.
  bool keypadTypes() {
    panel_.key(VK_NUMPAD7);
    const bool typed = eventually([this] { return panel_.digits() == "     7000"; }, 500);
    type("\x1b");
    return typed;
  }
  HWND focused() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(panel_.window(), nullptr), &info);
    return info.hwndFocus;
  }
  std::function<bool()> focuses(int control) {
    return [this, control] {
      return eventually([&] { return focused() == panel_.control(control); }, 3000);
    };
  }

  std::vector<Line> arrows();
  std::vector<Line> walking();
  std::vector<Line> settings();
  std::vector<Line> windows();
  std::vector<Line> panelKeys();
  void playPairs();
  void play(const std::vector<Line>& script) {
    for (const Line& line : script) {
      before_ = panel_.digits();
      line.press();
      EXPECT_TRUE(line.seen()) << line.keys << ": " << before_ << " -> " << panel_.digits();
      played_.insert(line.keys);
    }
  }

  const Instance instance_{L"TestKeyScript"};
  RunningPanel panel_{instance_.name(), programFolder(), kLogFolder};
  std::string before_;
  std::set<std::string, std::less<>> played_;
};

std::vector<Line> KeyScript::arrows() {
  return {
      {"HHHHHHH Right", [this] { type("2500"), panel_.key(VK_RIGHT); }, reads(id::VStep, "2500Hz")},
      {"Right", key(VK_RIGHT), on(" 10002800")},
      {"Left", key(VK_LEFT), on(" 10000300")},
      {"SHF Right", key(VK_RIGHT, kShift), on(" 10000301")},
      {"SHF Left", key(VK_LEFT, kShift), on(" 10000300")},
      {"SHF Up", key(VK_UP, kShift), on(" 10000301")},
      {"SHF Down", key(VK_DOWN, kShift), on(" 10000300")},
      {"CTL Right", key(VK_RIGHT, kCtrl), on(" 10000310")},
      {"CTL Left", key(VK_LEFT, kCtrl), on(" 10000300")},
      {"CTL Up", key(VK_UP, kCtrl), on(" 10000310")},
      {"CTL Down", key(VK_DOWN, kCtrl), on(" 10000300")},
      {"ALT Right", key(VK_RIGHT, kAlt), on(" 10000400")},
      {"ALT Left", key(VK_LEFT, kAlt), on(" 10000300")},
      {"ALT Up", key(VK_UP, kAlt), on(" 10000400")},
      {"ALT Down", key(VK_DOWN, kAlt), on(" 10000300")},
      {"Right", key(VK_RIGHT, kAlt | kCtrl | kShift), on(" 10000400")},
      {"Left", key(VK_LEFT, kAlt | kCtrl), on(" 10000300")},
      {"Up", key(VK_UP), tunes()},
      {"Down", key(VK_DOWN), on(" 10000300")},
      {"HOME", key(VK_HOME), on(" 10000000")},
  };
}

std::vector<Line> KeyScript::walking() {
  return {
      {"+", key(VK_ADD), tunes()},
      {"-", key(VK_SUBTRACT), tunes()},
      {"+", typed("+"), tunes()},
      {"-", typed("-"), tunes()},
      {"CTR+", key(VK_ADD, kCtrl), walks()},
      {"CTR-", key(VK_SUBTRACT, kCtrl), walks()},
      {"ALT+", key(VK_ADD, kAlt), walks()},
      {"ALT-", key(VK_SUBTRACT, kAlt), walks()},
      {"CTRALT+", key(VK_ADD, kCtrl | kAlt), walks()},
      {"CTRALT-", key(VK_SUBTRACT, kCtrl | kAlt), walks()},
      {"nnS", typed("6000\r11s6100\r12s9000\r"), on("  9000000")},
      {"nnC", typed("11c"), on("  6000000")},
      {"C+", [this] { type("c"), panel_.key(VK_ADD); }, on("  6100000")},
      {"C-", [this] { type("c"), panel_.key(VK_SUBTRACT); }, on("  6000000")},
      {"C+", typed("c+"), on("  6100000")},
      {"C-", typed("c-"), on("  6000000")},
  };
}

std::vector<Line> KeyScript::settings() {
  return {
      {"MU", typed("mu"), reads(id::ModEvent, "USB")},
      {"MX", typed("MX"), reads(id::ModEvent, "FAX")},
      {"MC", typed("mc"), reads(id::ModEvent, "CW")},
      {"HHHHF", typed("500f"), reads(id::ModEvent + 1, "500")},
      {"HHHHB", typed("700b"), reads(id::FrqBfo, "700")},
      {"MB", typed("5000\rmcmb"), reads(id::ModEvent, "AM")},
      {"FB", typed("fnfb"),
       [this] { return eventually([this] { return !panel_.visible(id::BFlt); }, 3000); }},
      {"CTL-C", [this] { type("7123.456\r"), shows("  7123456"), panel_.key('C', kCtrl); },
       on("  7123456")},
      {"CTL-V", [this] { type("9000\r"), shows("  9000000"), panel_.key('V', kCtrl); },
       on("  7123456")},
      {"L", typed("l"), appears(id::LockImg + 1)},
      {"U", typed("u"), appears(id::LockImg)},
      {"R", typed("r"), reads(id::RNG, "R2")},
      {"ESC", typed("999\x1b"), on("  7123456")},
      {"TAB", typed("\t"),
       [this] { return eventually([this] { return panel_.selectedTab() == 1; }); }},
      {"TAB", typed("\t\t\t"), [this] { return panel_.settledOn(0); }},
  };
}

/// The pairs that the receiver itself understands, each seen against its neighbour.
void KeyScript::playPairs() {
  const int mode = id::ModEvent, filter = id::ModEvent + 1, agc = id::ModEvent + 2;
  for (const auto& [keys, control, text] :
       std::vector<std::tuple<std::string, int, std::string>>{{"ma", mode, "AM"},
                                                              {"mf", mode, "FM"},
                                                              {"mu", mode, "USB"},
                                                              {"ml", mode, "LSB"},
                                                              {"mc", mode, "CW"},
                                                              {"mr", mode, "RTTY"},
                                                              {"mx", mode, "FAX"},
                                                              {"ma", mode, "AM"},
                                                              {"af", agc, "Fast"},
                                                              {"as", agc, "Slow"},
                                                              {"am", agc, "Medium"},
                                                              {"p0", id::HFF, "HF off"},
                                                              {"p1", id::HFF, "HF on"}}) {
    type(keys);
    EXPECT_TRUE(reads(control, text)()) << keys << ": " << panel_.text(control);
  }
  for (const char* keys : {"fn", "fw", "fm", "fr", "fi"}) {
    const std::string last = panel_.text(filter);
    type(keys);
    EXPECT_TRUE(eventually([&] { return panel_.text(filter) != last; }, 3000)) << keys << last;
  }
}

std::vector<Line> KeyScript::windows() {
  const auto opens = [this](const wchar_t* windowClass) {
    return [this, windowClass] {
      HWND window = nullptr;
      eventually([&] { return (window = panel_.findWindow(windowClass)) != nullptr; });
      PostMessageW(window, WM_CLOSE, 0, 0);
      return window && eventually([&] { return !panel_.findWindow(windowClass); });
    };
  };
  return {
      {"F1", key(VK_F1), opens(L"KelvaneMiniHelp")}, {"K", typed("k"), opens(L"KelvaneKnownList")},
      {"E", typed("e"), opens(L"KelvaneSource")},    {"nnS", typed("s"), opens(L"KelvaneChannel")},
      {"SPACE", typed(" "), opens(L"KelvaneLog")},   {"G", typed("g"), opens(L"KelvaneLog")},
      {"D", typed("d"), opens(L"KelvaneDataView")},
  };
}

std::vector<Line> KeyScript::panelKeys() {
  return {
      {"F6", key(VK_F6), focuses(id::FrqDigit + 5)},
      {"F6", key(VK_F6), focuses(id::ModEvent)},
      {"CTL F6", key(VK_F6, kCtrl), focuses(id::ModEvent + 1)},
      {"CTLSHF F6", key(VK_F6, kCtrl | kShift), focuses(id::ModEvent)},
      {"CR", typed("\r"),
       [this] { return eventually([this] { return panel_.text(id::ModEvent) != "AM"; }); }},
      {"SHF F6", key(VK_F6, kShift), focuses(id::FrqDigit + 5)},
      {"SHF F6", key(VK_F6, kShift), focuses(id::FrqFocus)},
  };
}

TEST_F(KeyScript, EachRowOfTheLanguageActsInTheRealProgram) {
  play(arrows());
  play(walking());
  play(settings());
  playPairs();
  play(panelKeys());
  play(windows());
  for (const CommandRow& row : commandRows()) EXPECT_TRUE(played_.contains(row.keys)) << row.keys;
}

TEST_F(KeyScript, TheKeypadTypesAndTunesWithNumLockOnAndOff) {
  if (!keypadTypes()) panel_.key(VK_NUMLOCK);
  ASSERT_TRUE(keypadTypes());
  for (const WORD code :
       {VK_NUMPAD7, VK_NUMPAD0, VK_NUMPAD5, VK_NUMPAD0, VK_DECIMAL, VK_NUMPAD5, VK_RETURN})
    panel_.key(code);
  EXPECT_TRUE(shows("  7050500")) << panel_.digits();
  panel_.key(VK_NUMLOCK);
  EXPECT_FALSE(keypadTypes());
  panel_.key(VK_RIGHT);
  EXPECT_TRUE(shows("  7051000")) << panel_.digits();
  panel_.key(VK_ADD, kCtrl);
  EXPECT_TRUE(reads(id::IBank, "Kf")());
  panel_.key(VK_NUMLOCK);
  type("7050,25\r");
  EXPECT_TRUE(shows("  7050250")) << panel_.digits();
}

TEST_F(KeyScript, GoesOnAfterAltAndF10WithoutAMenu) {
  panel_.key(VK_MENU);
  panel_.key(VK_RIGHT);
  EXPECT_TRUE(shows(" 10000800")) << panel_.digits();
  panel_.key(VK_F10);
  panel_.key(VK_LEFT);
  EXPECT_TRUE(shows(" 10000300")) << panel_.digits();
  panel_.key('M', kAlt);
  EXPECT_TRUE(eventually([&] {
    return SendMessageW(panel_.control(id::GenEvent), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }));
  panel_.key(VK_RIGHT);
  EXPECT_TRUE(shows(" 10000800")) << panel_.digits();
}

TEST_F(KeyScript, EveryRepeatOfAHeldKeyCounts) {
  for (int i = 0; i < 250; ++i) panel_.key(VK_RIGHT, 0);
  EXPECT_TRUE(shows(" 10125300")) << panel_.digits();
  type("5000\r");
  ASSERT_TRUE(shows("  5000000"));
  for (const WORD code : {VK_ADD, VK_SUBTRACT})
    for (int i = 0; i < 15; ++i) panel_.key(code, kCtrl);
  EXPECT_TRUE(shows("  5000000")) << "a step was lost or misread: " << panel_.digits();
  type("10125.3\r");
  ASSERT_TRUE(shows(" 10125300"));
  const HWND pointed = panel_.control(id::Band);
  RECT area;
  GetWindowRect(pointed, &area);
  pointAt(area.left + 5, area.top + 5);
  for (int i = 0; i < 250; ++i) panel_.turnWheel(120);
  EXPECT_TRUE(shows(" 10000300")) << panel_.digits();
}

TEST_F(KeyScript, WorksWhateverControlHasTheFocus) {
  for (const int steps : {2, 3, 4}) {
    for (int i = 0; i < steps; ++i) panel_.key(VK_F6);
    type("7050\r");
    EXPECT_TRUE(shows("  7050000")) << steps << panel_.digits();
    for (int i = 0; i < steps; ++i) panel_.key(VK_F6);
    panel_.key(VK_RIGHT);
    EXPECT_TRUE(shows("  7050500")) << steps << panel_.digits();
    panel_.click(id::Band);
  }
}

}  // namespace
}  // namespace kelvane::wine
