#include <windows.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include "base/text.h"
#include "base/win32/utf16.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace fs = std::filesystem;

constexpr int kNameField = 0x47c;
/// The field in which a grid's cell is edited.
constexpr int kChannels = 100;

std::string content(const fs::path& file) {
  std::stringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

/// Channels as the receiver keeps them.
std::string memories(int megahertz, int count = kChannels) {
  std::string text = "# Memory channels\r\n";
  for (int i = 0; i < count; ++i)
    text += std::to_string(i) + "; " + std::to_string(megahertz * 1'000'000 + i) +
            "; 0; AM; 6000; 0; 0\r\n";
  return text;
}

/// The same as the channel window exports them.
std::string exported(int megahertz, int count = kChannels) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "%03d;%11d;    0;   AM; 6000;Slow;0;\r\n", i,
                  megahertz * 1'000'000 + i);
    text += line;
  }
  return text;
}

/// The program with its channel window, on one simulated receiver.
class ChannelWindow {
 public:
  explicit ChannelWindow(const Instance& instance) : panel(instance.name()) {}

  /// Opens it by its key; answers whether it is on the screen.
  bool shown() {
    if (!panel.settledOn(0)) return false;
    arrow = pointerOver(panel.control(id::Band));
    panel.type("s");
    return eventually([this] { return (window = panel.findWindow(L"KelvaneChannel")) != nullptr; });
  }
  /// The same, when all channels were read.
  bool opened() { return shown() && says(" channels of K read."); }
  /// Rests the pointer there.
  static HCURSOR pointerOver(HWND control) {
    RECT area{};
    GetWindowRect(control, &area);
    pointAt((area.left + area.right) / 2, (area.top + area.bottom) / 2);
    return pointer();
  }
  static HCURSOR pointer() {
    CURSORINFO info{};
    info.cbSize = sizeof info;
    GetCursorInfo(&info);
    return info.hCursor;
  }
  bool enabled(int button) const { return IsWindowEnabled(GetDlgItem(window, button)) != 0; }
  /// It works: no button acts, the pointer over it says so.
  bool busy() const {
    return !enabled(id::ChnSave) && !enabled(id::ChnCancel) &&
           eventually([this] { return pointerOver(GetDlgItem(window, id::MemGrd)) != arrow; },
                      1000);
  }
  /// Buttons and pointer are as before, though no hand moves the pointer.
  bool restored() const {
    return eventually([this] { return pointer() == arrow; }) && enabled(id::ChnSave) &&
           enabled(id::ChnExport) && enabled(id::ChnCancel);
  }
  /// The panel still takes keys and tunes.
  bool panelLives() {
    panel.type("7321\r");
    return eventually([this] { return panel.digits() == "  7321000"; });
  }
  /// A message box begins with these words.
  bool boxSays(const std::string& words) {
    // Not the file dialog, which is of the same class.
    eventually([&] {
      const HWND box = panel.findWindow(L"#32770");
      return box && !GetDlgItem(box, kNameField);
    });
    return panel.messageBox().starts_with(words);
  }
  void close() const { PostMessageW(window, WM_CLOSE, 0, 0); }
  bool gone() const {
    return eventually([this] { return !IsWindow(window); });
  }
  std::string text(int control) const {
    wchar_t words[1024] = L"";
    SendMessageW(GetDlgItem(window, control), WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(words));
    return narrow(words);
  }
  bool says(const std::string& words) const {
    return eventually([&] { return text(id::ChnStatus).find(words) != std::string::npos; }, 60000);
  }
  /// The current cell, as a screen reader hears it.
  std::string cell() const { return text(id::MemGrd); }
  bool onCell(const std::string& words) const {
    return eventually([&] { return cell() == words; });
  }
  void press(int button) const { PostMessageW(GetDlgItem(window, button), BM_CLICK, 0, 0); }
  void key(WORD code, int modifiers = 0) {
    giveKeyboard(window);
    panel.keyHere(code, modifiers);
  }
  void type(const std::string& digits) {
    for (const char digit : digits) key(static_cast<WORD>(digit));
  }
  /// Presses a button that opens a file dialog, and chooses this file there.
  void choose(int button, const fs::path& file) {
    press(button);
    HWND dialog = nullptr;
    eventually([&] { return (dialog = panel.findWindow(L"#32770")) != nullptr; });
    Sleep(150);
    SendMessageW(GetDlgItem(dialog, kNameField), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(file.wstring().c_str()));
    PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
  }

  RunningPanel panel;
  HWND window = nullptr;
  HCURSOR arrow = nullptr;  ///< what the pointer is when nothing works
};

class ChannelTest : public testing::Test {
 protected:
  ChannelTest() { receiver("Channels=0-99\r\n", kChannels); }
  /// The one receiver, and what it keeps.
  void receiver(const std::string& keys, int channels) const {
    instance_.writeReceivers("Version=1\r\n[Receiver 1]\r\nName=K\r\n" + keys);
    fs::create_directories(memoryFile().parent_path());
    std::ofstream(memoryFile(), std::ios::binary) << memories(7, channels);
  }
  fs::path memoryFile() const { return instance_.folder() / L"Memories" / L"K.txt"; }
  fs::path file(const wchar_t* name) const { return instance_.folder() / name; }
  fs::path backup() const {
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(instance_.folder() / L"Backups", none)) {
      if (entry.path().extension() == L".txt") return entry.path();
    }
    return {};
  }

  const Instance instance_{L"TestChannels"};
};

TEST_F(ChannelTest, EditsAreTypedChosenAndSavedAndTheFileGoesOutAndInByteForByte) {
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.opened()) << channels.text(id::ChnStatus);
  EXPECT_TRUE(channels.onCell("Channels, 00, Frequency: 7000000")) << channels.cell();
  channels.choose(id::ChnExport, file(L"first.txt"));
  ASSERT_TRUE(channels.says("100 channels exported")) << channels.text(id::ChnStatus);
  EXPECT_EQ(content(file(L"first.txt")), exported(7));

  channels.key(VK_DOWN);
  channels.type("5000000");
  // Another field than the one for texts.
  EXPECT_TRUE(eventually([&] {
    const HWND entry = GetDlgItem(GetDlgItem(channels.window, id::MemGrd), kEntry);
    return IsWindowVisible(entry) && (GetWindowLongW(entry, GWL_STYLE) & ES_RIGHT);
  })) << "a number ends at the right edge";
  channels.key(VK_RETURN);
  EXPECT_TRUE(channels.onCell("Channels, 01, Frequency: 5000000")) << channels.cell();
  channels.key(VK_RIGHT);
  channels.key(VK_RIGHT);
  channels.type("U");
  EXPECT_TRUE(channels.onCell("Channels, 01, Mode: USB")) << channels.cell();
  channels.key(VK_DOWN);
  channels.key(VK_F4);
  channels.key(VK_DOWN);
  channels.key(VK_RETURN);
  EXPECT_TRUE(channels.onCell("Channels, 02, Mode: FM")) << channels.cell();
  channels.key('Z', 2);
  EXPECT_TRUE(channels.onCell("Channels, 02, Mode: AM")) << channels.cell();
  channels.key('S', 4);
  ASSERT_TRUE(channels.says("1 channel saved.")) << channels.text(id::ChnStatus);

  channels.press(id::ChnClear);
  ASSERT_TRUE(channels.says("The receiver's channels are cleared."))
      << channels.text(id::ChnStatus);
  channels.press(id::ChnReload);
  ASSERT_TRUE(channels.says("100 channels of K read."));
  EXPECT_TRUE(channels.onCell("Channels, 02, Mode: AM"));
  channels.choose(id::ChnImport, backup());
  ASSERT_TRUE(channels.says("100 channels imported")) << channels.text(id::ChnStatus);
  channels.choose(id::ChnExport, file(L"second.txt"));
  ASSERT_TRUE(channels.says("100 channels exported"));
  EXPECT_EQ(content(file(L"second.txt")), content(backup()));
  EXPECT_NE(content(backup()).find("001;    5000000;    0;  USB;"), std::string::npos);
  channels.press(id::ChnSave);
  ASSERT_TRUE(channels.says("100 channels saved.")) << channels.text(id::ChnStatus);
  channels.key(VK_ESCAPE);
  EXPECT_TRUE(eventually([&] { return !IsWindow(channels.window); }));
  ASSERT_TRUE(channels.opened()) << "a second time: " << channels.text(id::ChnStatus);
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(channels.window, id::ChnSave)));
  channels.panel.close();
  EXPECT_EQ(channels.panel.ended(), 0);
  EXPECT_NE(content(memoryFile()).find("\r\n1; 5000000; 0; USB; "), std::string::npos);
}

TEST_F(ChannelTest, AnEndWithUnsavedEditsIsAskedForByButtonsThatSayWhatTheyDo) {
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.opened());
  channels.key(VK_DOWN);
  channels.type("5000000");
  channels.key(VK_RETURN);
  const std::string edited = "Channels, 01, Frequency: 5000000";
  ASSERT_TRUE(channels.onCell(edited)) << channels.cell();
  const auto offered = [&] {
    channels.panel.close();
    EXPECT_EQ(channels.panel.messageBox(), "Save the unsaved channel edits to K?");
    const HWND box = channels.panel.findWindow(L"#32770");
    std::string words;
    for (const int button : {IDYES, IDNO}) {
      wchar_t text[30] = L"";
      GetDlgItemTextW(box, button, text, 30);
      words += narrow(text) + "|";
    }
    return words;
  };
  EXPECT_EQ(offered(), "&Save|Do&n't save|");
  channels.panel.close();
  channels.panel.answer(IDCANCEL);
  EXPECT_TRUE(channels.panelLives());
  EXPECT_TRUE(channels.onCell(edited)) << "the edits are still there: " << channels.cell();
  EXPECT_EQ(offered(), "&Save|Do&n't save|");
  channels.panel.answer(IDNO);
  EXPECT_EQ(channels.panel.ended(), 0);
  EXPECT_EQ(content(memoryFile()), memories(7));
  EXPECT_EQ(backup(), fs::path());
}

TEST_F(ChannelTest, AWrongLineIsSaidInABoxAndTheMainWindowWaitsBeneathIt) {
  std::ofstream(file(L"bad.txt"), std::ios::binary) << "3;6000000;0;AM;6000;Slow;0;\r\n4;x\r\n";
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.opened());
  channels.choose(id::ChnImport, file(L"bad.txt"));
  ASSERT_TRUE(channels.says("Line 2 don't contain"));
  EXPECT_EQ(channels.panel.messageBox(), "Line 2 don't contain the required number of fields !");
  EXPECT_FALSE(IsWindowEnabled(channels.panel.window()));
  channels.panel.answer(IDOK);
  EXPECT_TRUE(eventually([&] { return IsWindowEnabled(channels.panel.window()) != 0; }));
}

TEST_F(ChannelTest, AFileThatAnotherProgramHoldsIsNotReplacedByAnExport) {
  std::ofstream(file(L"held.txt"), std::ios::binary) << "the old one";
  const HANDLE held =
      CreateFileW(file(L"held.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.opened());
  const auto says = [&](const std::string& words) { return channels.boxSays(words); };
  channels.choose(id::ChnExport, file(L"held.txt"));
  ASSERT_TRUE(says("Do you want to replace file ?"));
  channels.panel.answer(IDOK);
  ASSERT_TRUE(says("Error: The old file cannot be replaced: "));
  channels.panel.answer(IDOK);
  CloseHandle(held);
  EXPECT_EQ(content(file(L"held.txt")), "the old one");

  channels.choose(id::ChnExport, file(L"held.txt"));
  ASSERT_TRUE(says("Do you want to replace file ?"));
  channels.panel.answer(IDOK);
  EXPECT_TRUE(channels.says("100 channels exported")) << "once it is free";
  EXPECT_EQ(content(file(L"held.txt")), exported(7));
  EXPECT_EQ(content(file(L"held.txt.bak")), "the old one");
}

/// Every line whole, and each channel with a value of before or of after.
void expectWhole(const std::string& text, std::size_t fields, int channels = kChannels) {
  ASSERT_TRUE(text.ends_with("\r\n")) << text.size() << " bytes";
  int whole = 0;
  for (const std::string_view line :
       split(std::string_view(text).substr(0, text.size() - 2), '\n')) {
    if (line.starts_with("#")) continue;
    const auto parts = split(line, ';');
    ASSERT_EQ(parts.size(), fields) << line;
    const std::string frequency(trimmed(parts[1]));
    EXPECT_TRUE(frequency.size() == 7 && (frequency[0] == '7' || frequency[0] == '8')) << line;
    ++whole;
  }
  EXPECT_EQ(whole, channels);
}

TEST_F(ChannelTest, ClosedInTheMiddleOfAReadItReadsAllWhenItIsOpenedAgain) {
  receiver("Channels=0-99\r\nChannelTime=50\r\n", kChannels);
  ChannelWindow channels(instance_);
  for (const bool byKey : {false, true}) {
    ASSERT_TRUE(channels.shown());
    ASSERT_TRUE(channels.says(" of 100 ..."));
    EXPECT_TRUE(channels.busy());
    channels.key(VK_ESCAPE);
    EXPECT_TRUE(IsWindow(channels.window)) << "Escape ends nothing that is at work";
    if (byKey)
      channels.key(VK_F4, 4);
    else
      channels.close();
    ASSERT_TRUE(channels.gone());
    EXPECT_TRUE(eventually([&] { return channels.panel.text(id::LChn).empty(); }, 3500))
        << "the rest would take seconds";
    EXPECT_TRUE(channels.panelLives());
  }
  ASSERT_TRUE(channels.opened()) << channels.text(id::ChnStatus);
  EXPECT_EQ(channels.text(id::ChnStatus), "100 channels of K read.");
  EXPECT_TRUE(channels.onCell("Channels, 00, Frequency: 7000000")) << channels.cell();
  channels.key(VK_END, 2);
  EXPECT_TRUE(channels.onCell("Channels, 99, Frequency: 7000099")) << channels.cell();
}

TEST_F(ChannelTest, ClosedInTheMiddleOfASaveItLeavesEachChannelOldOrNew) {
  constexpr int kMany = 1000;
  receiver("Channels=0-999\r\nChannelTime=0\r\n", kMany);
  std::ofstream(file(L"new.txt"), std::ios::binary) << exported(8, kMany);
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.opened());
  channels.choose(id::ChnImport, file(L"new.txt"));
  ASSERT_TRUE(channels.says("1000 channels imported")) << channels.text(id::ChnStatus);
  channels.press(id::ChnSave);
  ASSERT_TRUE(channels.says("Saving channel 0"));
  EXPECT_FALSE(channels.enabled(id::ChnSave));
  channels.close();
  ASSERT_TRUE(channels.gone());
  EXPECT_TRUE(channels.panelLives());
  ASSERT_TRUE(channels.opened());
  EXPECT_TRUE(channels.restored());
  EXPECT_TRUE(channels.onCell("Channels, 000, Frequency: 8000000")) << channels.cell();
  channels.key(VK_END, 2);
  EXPECT_TRUE(channels.onCell("Channels, 999, Frequency: 7000999")) << "it came to an end before";
  channels.panel.close();
  EXPECT_EQ(channels.panel.ended(), 0);
  expectWhole(content(memoryFile()), 7, kMany);
}

TEST_F(ChannelTest, AReadThatStallsIsSaidAndGivesTheWindowBack) {
  receiver("Channels=0-99\r\nChannelRead=stalls\r\n", kChannels);
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.shown());
  EXPECT_TRUE(channels.busy());
  ASSERT_TRUE(channels.says("The receiver stopped reading after 3 channels."))
      << channels.text(id::ChnStatus);
  EXPECT_EQ(channels.panel.text(id::LChn), "Err");
  EXPECT_TRUE(channels.restored());
  EXPECT_TRUE(channels.onCell("Channels, 00, Frequency: 7000000")) << "what came stays";
  EXPECT_TRUE(eventually([&] { return channels.panel.text(id::LChn).empty(); }))
      << "the watchdog takes its word back and stops";
  EXPECT_TRUE(channels.panelLives());
  channels.press(id::ChnReload);
  EXPECT_TRUE(channels.gone()) << "a reading again that fails";
  EXPECT_TRUE(channels.panelLives());
}

TEST_F(ChannelTest, AReadThatNeverStartsIsSaidAndGivesTheWindowBack) {
  receiver("Channels=0-99\r\nChannelRead=never\r\n", kChannels);
  ChannelWindow channels(instance_);
  ASSERT_TRUE(channels.shown());
  EXPECT_TRUE(channels.says("The receiver did not start to read its channels."));
  EXPECT_TRUE(channels.restored());
  EXPECT_EQ(channels.panel.text(id::LChn), "Err");
  EXPECT_FALSE(eventually([&] { return channels.panel.text(id::LChn) != "Err"; }, 2500))
      << "no watchdog runs";
  EXPECT_TRUE(channels.panelLives());
  channels.press(id::ChnReload);
  EXPECT_TRUE(channels.gone());
}

/// Watches a file that the program writes, without opening it.
class WatchedFile {
 public:
  /// A file that is shorter than this is torn. The name may hold a "*".
  WatchedFile(fs::path file, std::size_t whole)
      : file_(std::move(file)), whole_(whole), before_(look()) {}

  /// Waits until the file or the list of its folder's files has changed so many times, which may be
  /// fewer than there were: quick ones look like one. A torn file ends it at once. Answers whether
  /// anything changed.
  bool changed(int times) {
    ULONGLONG end = GetTickCount64() + 4000;
    int seen = 0;
    while (seen < times && !torn_ && GetTickCount64() < end) {
      const Look now = look();
      torn_ = now.size && *now.size < whole_;
      if (now == before_) continue;
      before_ = now;
      ++seen;
      end = GetTickCount64() + 500;
    }
    return seen > 0;
  }
  /// Who kills the program at such a moment is left with half a file, or an empty one.
  bool torn() const { return torn_; }

 private:
  struct Look {
    std::optional<std::size_t> size;  ///< none where there is no such file
    DWORD time = 0, folder = 0;
    bool operator==(const Look&) const = default;
  };

  Look look() const {
    Look look;
    WIN32_FILE_ATTRIBUTE_DATA folder{}, file{};
    GetFileAttributesExW(file_.parent_path().c_str(), GetFileExInfoStandard, &folder);
    look.folder = folder.ftLastWriteTime.dwLowDateTime;
    if (file_.native().find(L'*') != std::wstring::npos) {
      WIN32_FIND_DATAW found{};
      const HANDLE search = FindFirstFileW(file_.c_str(), &found);
      if (search == INVALID_HANDLE_VALUE) return look;
      FindClose(search);
      look.size = found.nFileSizeLow;
      look.time = found.ftLastWriteTime.dwLowDateTime;
    } else if (GetFileAttributesExW(file_.c_str(), GetFileExInfoStandard, &file)) {
      look.size = file.nFileSizeLow;
      look.time = file.ftLastWriteTime.dwLowDateTime;
    }
    return look;
  }

  fs::path file_;
  std::size_t whole_;
  Look before_;
  bool torn_ = false;
};

/// The program with many channels, killed in the middle of writing a file.
class KilledChannels : public ChannelTest {
 protected:
  static constexpr int kMany = 4000, kKills = 7;

  void SetUp() override { std::ofstream(file(L"new.txt"), std::ios::binary) << exported(8, kMany); }
  /// Opens the window, begins something and kills the program when this file has changed so many
  /// times, or at the moment when it is not whole.
  template <class Begin>
  void killAt(int changes, const fs::path& written, std::size_t whole, Begin begin) {
    receiver("Channels=0-3999\r\nChannelTime=0\r\n", kMany);
    ChannelWindow channels(instance_);
    ASSERT_TRUE(channels.opened());
    fs::create_directories(written.parent_path());
    WatchedFile file(written, whole);
    begin(channels);
    ASSERT_TRUE(file.changed(changes));
    EXPECT_FALSE(file.torn()) << changes;
  }
};

TEST_F(KilledChannels, AreWholeWhileTheyAreSaved) {
  int newOnes = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    killAt(kill + 1, memoryFile(), memories(7, kMany).size(), [&](ChannelWindow& channels) {
      channels.choose(id::ChnImport, file(L"new.txt"));
      ASSERT_TRUE(channels.says("4000 channels imported"));
      channels.press(id::ChnSave);
    });
    const std::string kept = content(memoryFile());
    expectWhole(kept, 7, kMany);
    newOnes += kept != memories(7, kMany);
  }
  EXPECT_GT(newOnes, 0) << "some kills came after the first file";
}

TEST_F(KilledChannels, LeaveAWholeBackupOrAreNotCleared) {
  const fs::path folder = instance_.folder() / L"Backups";
  for (int kill = 0; kill < kKills; ++kill) {
    fs::remove_all(folder);
    killAt(1 + kill % 2, folder / L"K_Mem*.txt", exported(7, kMany).size(),
           [](ChannelWindow& channels) { channels.press(id::ChnClear); });
    if (!backup().empty()) {
      EXPECT_TRUE(content(backup()) == exported(7, kMany)) << "kill " << kill;
    } else {
      EXPECT_TRUE(content(memoryFile()) == memories(7, kMany)) << "kill " << kill;
    }
  }
}

TEST_F(KilledChannels, LeaveTheOldExportOrTheNewOne) {
  const fs::path out = instance_.folder() / L"out" / L"out.txt";
  const fs::path old = instance_.folder() / L"out" / L"out.txt.bak";
  for (int kill = 0; kill < kKills; ++kill) {
    fs::remove_all(out.parent_path());
    fs::create_directories(out.parent_path());
    std::ofstream(out, std::ios::binary) << exported(6, kMany);
    killAt(1 + kill % 4, out, exported(7, kMany).size(), [&](ChannelWindow& channels) {
      channels.choose(id::ChnExport, out);
      ASSERT_TRUE(channels.boxSays("Do you want to replace file ?"));
      PostMessageW(GetDlgItem(channels.panel.findWindow(L"#32770"), IDOK), BM_CLICK, 0, 0);
    });
    // The operator had the old one replaced: it is the backup from then on.
    const bool replaced = fs::exists(old);
    EXPECT_TRUE(content(replaced ? old : out) == exported(6, kMany)) << "kill " << kill;
    if (replaced && fs::exists(out)) {
      EXPECT_TRUE(content(out) == exported(7, kMany)) << "kill " << kill;
    }
  }
}

}  // namespace
}  // namespace kelvane::wine
