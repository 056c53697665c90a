#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "base/text.h"
#include "base/win32/utf16.h"
#include "panel/key_commands.h"
#include "tests/fakes/card_keys.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

const std::string kMain = "From main window", kDigit = "On a selected digit";
/// The log lies where the program is started.
const std::filesystem::path kLogFolder = std::filesystem::temp_directory_path();

/// One row of the card of keys: real keys, and what is seen of them in the program.
struct Line {
  std::string keys;  ///< as the card and the table of commands name them
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
    return eventually([&] { return panel_.digits() == digits; });
  }
  std::function<bool()> on(const std::string& digits) {
    return [this, digits] { return shows(digits); };
  }
  std::function<bool()> reads(int control, const std::string& text) {
    return
        [this, control, text] { return eventually([&] { return panel_.text(control) == text; }); };
  }
  std::function<bool()> appears(int control) {
    return [this, control] { return eventually([&] { return panel_.visible(control); }); };
  }
  /// The digits are others than before the key.
  std::function<bool()> tunes() {
    return [this] { return eventually([this] { return panel_.digits() != before_; }); };
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
      return eventually([&] { return focused() == panel_.control(control); });
    };
  }

  /// Tunes after a window has gone. On a loaded machine the system's last words about it may take
  /// the keyboard away for a key; and a D that opened a window begins a DRM frequency too.
  bool tuned(const std::string& kilohertz, const std::string& digits) {
    for (int tries = 0; tries < 3; ++tries) {
      type("\x1b" + kilohertz + "\r");
      if (shows(digits)) return true;
    }
    return false;
  }
  /// The window of this class, on the screen and with the keyboard; the script's other window now.
  bool opened(const wchar_t* windowClass) {
    other_ = nullptr;
    eventually([&] { return (other_ = panel_.findWindow(windowClass)) != nullptr; });
    return other_ && giveKeyboard(other_);
  }
  bool closed() {
    PostMessageW(other_, WM_CLOSE, 0, 0);
    return eventually([this] { return !IsWindow(other_); });
  }
  std::function<void()> keyThere(WORD code, int modifiers = 0) {
    return [this, code, modifiers] {
      giveKeyboard(other_);
      panel_.keyHere(code, modifiers);
    };
  }
  std::function<bool()> focusesThere(int control) {
    return [this, control] {
      return eventually([&] { return focused() == GetDlgItem(other_, control); });
    };
  }
  /// The current cell of the other window's grid, as it is spoken.
  std::string spoken(int grid) const {
    wchar_t words[1024] = L"";
    SendMessageW(GetDlgItem(other_, grid), WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(words));
    return narrow(words);
  }
  std::function<bool()> speaks(int grid, const std::string& part) {
    return [this, grid, part] {
      return eventually([&] { return spoken(grid).find(part) != std::string::npos; });
    };
  }
  std::function<bool()> speaksAndTunes(int grid, const std::string& part,
                                       const std::string& digits) {
    return [this, grid, part, digits] { return speaks(grid, part)() && shows(digits); };
  }

  std::vector<Line> typing();
  std::vector<Line> arrows();
  std::vector<Line> walking();
  std::vector<Line> settings();
  std::vector<Line> windows();
  std::vector<Line> panelKeys();
  std::vector<Line> digitKeys();
  std::vector<Line> channelKeys();
  std::vector<Line> logKeys();
  std::vector<Line> overviewKeys();
  std::vector<Line> traceKeys();
  void playViews();
  void playPairs();
  void playChannels();
  void playLog();
  void playCard();
  void play(const std::vector<Line>& script, const std::string& from = kMain) {
    for (const Line& line : script) {
      before_ = panel_.digits();
      line.press();
      EXPECT_TRUE(line.seen()) << from << ", " << line.keys << ": " << before_ << " -> "
                               << panel_.digits();
      played_.insert({from, line.keys});
    }
  }

  const Instance instance_{L"TestKeyScript"};
  RunningPanel panel_{instance_.name(), programFolder(), kLogFolder};
  HWND other_ = nullptr;
  std::string before_;
  std::set<std::pair<std::string, std::string>> played_;  ///< where, and which keys
};

std::vector<Line> KeyScript::typing() {
  const auto drm = [this] {
    type("d");
    EXPECT_TRUE(opened(L"KelvaneDataView") && closed());
    type("7100\r");
  };
  return {
      {"MMMKKK.HHH CR", typed("7100.5\r"), on("  7100500")},
      {"MMMKKK.HHH +", typed("2.5+"), on("  7103000")},
      {"MMMKKK.HHH -", typed("3-"), on("  7100000")},
      // A channel is named by the middle of what is heard, the carrier lies beside it.
      {":MMMKKK.HHH CR", typed("mu:7100\r"), on("  7098600")},
      {"DMMMKKK.HHH CR", drm, on("  7105000")},
      {"MMMKKK.HHH CR", typed("ma10000.3\r"), on(" 10000300")},
  };
}

std::vector<Line> KeyScript::arrows() {
  return {
      {"HHHHHHH Right",
       [this] {
         type("2500");
         panel_.key(VK_RIGHT);
       },
       reads(id::VStep, "2500Hz")},
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
      {"MMMKKK.HHH CR", typed("9999.8\r"), on("  9999800")},
      {"HOME", key(VK_HOME), on(" 10000000")},  // not rounded down: it is known
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
      {"CTR+", key(VK_OEM_PLUS, kCtrl | kShift), walks()},
      {"ALT-", key(VK_OEM_MINUS, kAlt), walks()},
      {"nnS", typed("6000\r11s6100\r12s9000\r"), on("  9000000")},
      {"nnC", typed("11c"), on("  6000000")},
      {"C+",
       [this] {
         type("c");
         panel_.key(VK_ADD);
       },
       on("  6100000")},
      {"C-",
       [this] {
         type("c");
         panel_.key(VK_SUBTRACT);
       },
       on("  6000000")},
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
       [this] { return eventually([this] { return !panel_.visible(id::BFlt); }); }},
      {"CTL-C",
       [this] {
         type("7123.456\r");
         shows("  7123456");
         panel_.key('C', kCtrl);
       },
       on("  7123456")},
      {"CTL-V",
       [this] {
         type("9000\r");
         shows("  9000000");
         panel_.key('V', kCtrl);
       },
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
    played_.insert({kMain, upper(keys)});
  }
  for (const char* keys : {"fn", "fw", "fm", "fr", "fi"}) {
    const std::string last = panel_.text(filter);
    type(keys);
    EXPECT_TRUE(eventually([&] { return panel_.text(filter) != last; })) << keys << last;
    played_.insert({kMain, upper(keys)});
  }
}

std::vector<Line> KeyScript::windows() {
  const auto opens = [this](const wchar_t* windowClass) {
    return [this, windowClass] { return opened(windowClass) && closed(); };
  };
  return {
      {"F1", key(VK_F1), opens(L"KelvaneMiniHelp")},
      {"K", typed("k"), opens(L"KelvaneKnownList")},
      {"E", typed("e"), opens(L"KelvaneSource")},
      {"S", typed("s"), opens(L"KelvaneChannel")},
      {"D", typed("d"), opens(L"KelvaneDataView")},
      {"Y", typed("y"), opens(L"KelvaneStations")},
      {"CTL-Y", [this] { panel_.key('Y', kCtrl); }, opens(L"KelvaneStations")},
  };
}

std::vector<Line> KeyScript::digitKeys() {
  return {
      {"Left", key(VK_LEFT), focuses(id::FrqDigit + 4)},
      {"Right", key(VK_RIGHT), focuses(id::FrqDigit + 5)},
      {"Up", key(VK_UP), on("  7124457")},
      {"Down", key(VK_DOWN), on("  7123457")},
      {"Up Up", key(VK_PRIOR), on("  7126457")},
      {"Down Down", key(VK_NEXT), on("  7123457")},
      {"HOME", key(VK_HOME), on("  7123000")},
  };
}

/// From the first channel on, of which three are stored.
std::vector<Line> KeyScript::channelKeys() {
  const int grid = id::MemGrd;
  return {
      {"Down", keyThere(VK_DOWN), speaks(grid, "01, Frequency: 6100000")},
      {"Up", keyThere(VK_UP), speaks(grid, "00, Frequency: 6000000")},
      {"Right", keyThere(VK_RIGHT), speaks(grid, "00, BFO: ")},
      {"Left", keyThere(VK_LEFT), speaks(grid, "00, Frequency: ")},
      {"SHF Down", keyThere(VK_DOWN, kShift), speaksAndTunes(grid, "01, ", "  6100000")},
      {"SHF Up", keyThere(VK_UP, kShift), speaksAndTunes(grid, "00, ", "  6000000")},
      {"SPACE",
       [this] {
         type("7300\r");
         shows("  7300000");
         keyThere(VK_SPACE)();
       },
       speaks(grid, "00, Frequency: 7300000")},
  };
}

void KeyScript::playChannels() {
  for (const std::string channel : {"0", "1", "2"}) {
    ASSERT_TRUE(tuned("6" + channel + "00", "  6" + channel + "00000"));
    type(channel + "s");
  }
  type("s");
  ASSERT_TRUE(opened(L"KelvaneChannel"));
  ASSERT_TRUE(eventually([this] { return IsWindowEnabled(GetDlgItem(other_, id::ChnSave)); }));
  play(channelKeys(), "From channel window");
  EXPECT_TRUE(closed());
}

/// From the second record, of three.
std::vector<Line> KeyScript::logKeys() {
  const int grid = id::PadGrd;
  return {
      {"Up", keyThere(VK_UP), speaks(grid, "7300000, Frequency")},
      {"Down", keyThere(VK_DOWN), speaks(grid, "7400000, Frequency")},
      {"Right", keyThere(VK_RIGHT), speaks(grid, "7400000, Mode: ")},
      {"Left", keyThere(VK_LEFT), speaks(grid, "7400000, Frequency")},
      {"SHF Up", keyThere(VK_UP, kShift), speaksAndTunes(grid, "7300000, ", "  7300000")},
      {"SHF Down", keyThere(VK_DOWN, kShift), speaksAndTunes(grid, "7400000, ", "  7400000")},
  };
}

void KeyScript::playLog() {
  const auto records = [this](int count) {
    wchar_t caption[100] = L"";
    return [=, this]() mutable {
      const bool counted =
          opened(L"KelvaneLog") && eventually([&] {
            GetWindowTextW(other_, caption, 100);
            return narrow(caption) == "Frequency logs [" + std::to_string(count) + " records]";
          });
      return counted && closed();
    };
  };
  const auto at = [this](const std::string& kilohertz, const std::string& keys) {
    return [=, this] { tuned(kilohertz, "  " + kilohertz + "000") ? type(keys) : void(); };
  };
  play({{"SPACE", at("7300", " "), records(1)},
        {"SPACE", at("7400", " "), records(2)},
        {"SPACE", at("7500", " "), records(3)},
        {"G", at("7400", "g"), records(3)}});
  type("g");
  ASSERT_TRUE(opened(L"KelvaneLog"));
  ASSERT_TRUE(eventually([this] { return IsWindowEnabled(GetDlgItem(other_, IDOK)) != 0; }));
  keyThere(VK_HOME)();
  ASSERT_TRUE(speaks(id::PadGrd, "7400000, Frequency")()) << spoken(id::PadGrd);
  play(logKeys(), "From log window");
  EXPECT_TRUE(closed());
}

/// From the first row, of a new instance's four.
std::vector<Line> KeyScript::overviewKeys() {
  const int harrow = id::AllRow, quill = id::AllRow + 1;
  const auto digits = [this] {
    giveKeyboard(other_);
    for (const int code : {int('9'), int('5'), int('8'), int('0'), VK_RETURN})
      panel_.keyHere(static_cast<WORD>(code));
  };
  const auto copied = [this] {
    keyThere('C', kCtrl)();
    panel_.keyHere(VK_UP);
  };
  const auto shown = [this](int tab) {
    return [=, this] { return eventually([&] { return panel_.selectedTab() == tab; }); };
  };
  return {{"Down", keyThere(VK_DOWN), focusesThere(quill)},
          {"Up", keyThere(VK_UP), focusesThere(harrow)},
          {"Down", keyThere(VK_DOWN), focusesThere(quill)},
          {"Right", keyThere(VK_RIGHT), speaks(quill, "14200.500 kHz")},
          {"Left", keyThere(VK_LEFT), speaks(quill, "14200.000 kHz")},
          {"MMMKKK.HHH CR", digits, speaks(quill, "9580.000 kHz")},
          {"CR", keyThere(VK_RETURN), shown(1)},
          {"CTL 1..8", keyThere('1', kCtrl), shown(0)},
          {"CTL-C", copied, focusesThere(harrow)},
          {"CTL-V", keyThere('V', kCtrl), speaks(harrow, "9580.000 kHz")},
          {"CTL-Z", keyThere('Z', kCtrl), speaks(harrow, "7123.000 kHz")}};
}

std::vector<Line> KeyScript::traceKeys() {
  const int results = id::TraceResults, plot = id::TracePlot, first = id::TraceReceiver;
  const auto silent = [this](int control, const std::string& part) {
    return [=, this] {
      return eventually([&] { return spoken(control).find(part) == std::string::npos; });
    };
  };
  return {{"1..8", keyThere('2'), silent(results, "Quill")},
          {"+", keyThere(VK_ADD), speaks(results, "10 min shown")},
          {"-", keyThere(VK_SUBTRACT), speaks(results, "5 min shown")},
          {"PGUP", keyThere(VK_PRIOR), speaks(id::TracePause, "R&un")},
          {"PGDN", keyThere(VK_NEXT), speaks(id::TracePause, "Pa&use")},
          {"SPACE", keyThere(VK_SPACE), speaks(id::TracePause, "R&un")},
          {"Left", keyThere(VK_LEFT), speaks(plot, " UTC, Harrow ")},
          {"Right", keyThere(VK_RIGHT), speaks(plot, " UTC, Harrow ")},
          {"Up", keyThere(VK_UP), speaks(id::TraceScale, "Fixed")},
          {"Down", keyThere(VK_DOWN), speaks(id::TraceScale, "Fixed")},
          {"CTL Up", keyThere(VK_UP, kCtrl), speaks(first, "Harrow +0.1")},
          {"CTL Down", keyThere(VK_DOWN, kCtrl), silent(first, "+0.1")},
          {"CTL-C", keyThere('C', kCtrl), speaks(results, "on the clipboard")}};
}

/// Both windows keep what they show while they are closed.
void KeyScript::playViews() {
  const auto hidden = [this] {
    panel_.keyHere(VK_ESCAPE);
    return eventually([this] { return !IsWindowVisible(other_); });
  };
  ASSERT_TRUE(tuned("7123", "  7123000"));
  play({{"F7", key(VK_F7), [this] { return opened(L"KelvaneOverview"); }}});
  ASSERT_TRUE(speaks(id::AllRow, "1 Harrow, shown, 7123.000 kHz")()) << spoken(id::AllRow);
  play(overviewKeys(), "From all receivers (F7)");
  EXPECT_TRUE(hidden());
  play({{"F8", key(VK_F8), [this] { return opened(L"KelvaneTraces"); }}});
  play(traceKeys(), "From level traces (F8)");
  EXPECT_TRUE(hidden());
}

void KeyScript::playCard() {
  panel_.key(VK_F1);
  ASSERT_TRUE(opened(L"KelvaneMiniHelp"));
  play({{"ALT S", keyThere('S', kAlt),
         [this] { return panel_.messageBox().find("report.txt") != std::string::npos; }}},
       "From this card");
  panel_.answer(IDOK);
  EXPECT_TRUE(closed());
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

TEST_F(KeyScript, EachRowOfTheCardDoesInTheRealProgramWhatItSays) {
  play(typing());
  play(arrows());
  play(walking());
  play(settings());
  playPairs();
  play(panelKeys());
  play(windows());
  ASSERT_TRUE(tuned("7123.457", "  7123457")) << panel_.digits();
  panel_.key(VK_F6);
  ASSERT_TRUE(focuses(id::FrqDigit + 5)());
  play(digitKeys(), kDigit);
  type("\x1b");
  playChannels();
  playLog();
  playViews();
  playCard();
  for (const CommandRow& row : commandRows())
    EXPECT_TRUE(played_.contains({kMain, std::string(row.keys)})) << row.keys;
  for (const fakes::CardKey& row : fakes::cardKeys())
    EXPECT_TRUE(played_.contains({row.from, row.keys})) << row.from << ": " << row.keys;
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
