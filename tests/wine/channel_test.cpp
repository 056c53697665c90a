#include <windows.h>

#include <fstream>
#include <optional>
#include <sstream>

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
constexpr int kEntry = 2;
constexpr int kChannels = 100;

std::string content(const fs::path& file) {
  std::stringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

/// A hundred channels as the receiver keeps them.
std::string memories(int megahertz) {
  std::string text = "# Memory channels\r\n";
  for (int i = 0; i < kChannels; ++i)
    text += std::to_string(i) + "; " + std::to_string(megahertz * 1'000'000 + i) +
            "; 0; AM; 6000; 0; 0\r\n";
  return text;
}

/// The same as the channel window exports them.
std::string exported(int megahertz) {
  std::string text;
  for (int i = 0; i < kChannels; ++i) {
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

  /// Opens it by its key; answers whether all channels were read.
  bool opened() {
    if (!panel.settledOn(0)) return false;
    panel.type("s");
    return eventually(
               [this] { return (window = panel.findWindow(L"KelvaneChannel")) != nullptr; }) &&
           says("100 channels of K read.");
  }
  std::string text(int control) const {
    wchar_t words[1024] = L"";
    SendMessageW(GetDlgItem(window, control), WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(words));
    return narrow(words);
  }
  bool says(const std::string& words) const {
    return eventually([&] { return text(id::ChnStatus).find(words) != std::string::npos; }, 15000);
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
};

class ChannelTest : public testing::Test {
 protected:
  ChannelTest() {
    instance_.writeReceivers("Version=1\r\n[Receiver 1]\r\nName=K\r\nChannels=0-99\r\n");
    fs::create_directories(memoryFile().parent_path());
    std::ofstream(memoryFile(), std::ios::binary) << memories(7);
  }
  fs::path memoryFile() const { return instance_.folder() / L"Memories" / L"K.txt"; }
  fs::path file(const wchar_t* name) const { return instance_.folder() / name; }
  fs::path backup() const {
    for (const auto& entry : fs::directory_iterator(instance_.folder() / L"Backups")) {
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
  const auto says = [&](const std::string& words) {
    // Not the file dialog, which is of the same class.
    eventually([&] {
      const HWND box = channels.panel.findWindow(L"#32770");
      return box && !GetDlgItem(box, kNameField);
    });
    return channels.panel.messageBox().starts_with(words);
  };
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
void expectWhole(const std::string& text, std::size_t fields) {
  ASSERT_TRUE(text.ends_with("\r\n"));
  for (const std::string_view line :
       split(std::string_view(text).substr(0, text.size() - 2), '\n')) {
    if (line.starts_with("#")) continue;
    const auto parts = split(line, ';');
    ASSERT_EQ(parts.size(), fields) << line;
    const std::string frequency(trimmed(parts[1]));
    EXPECT_TRUE(frequency.size() == 7 && (frequency[0] == '7' || frequency[0] == '8')) << line;
  }
}

TEST_F(ChannelTest, TwentyKillsWhileItSavesOrClearsLeaveNoTornFile) {
  std::ofstream(file(L"new.txt"), std::ios::binary) << exported(8);
  int changed = 0;
  for (int kill = 0; kill < 20; ++kill) {
    std::ofstream(memoryFile(), std::ios::binary) << memories(7);
    fs::remove_all(instance_.folder() / L"Backups");
    std::optional<ChannelWindow> channels(std::in_place, instance_);
    ASSERT_TRUE(channels->opened());
    if (kill % 2 == 0) {
      channels->choose(id::ChnImport, file(L"new.txt"));
      ASSERT_TRUE(channels->says("100 channels imported"));
      channels->press(id::ChnSave);
    } else {
      channels->press(id::ChnClear);
    }
    // Early and late: how soon the first write comes is the machine's.
    Sleep(static_cast<DWORD>(2 * kill * kill));
    channels.reset();
    const std::string kept = content(memoryFile());
    changed += kept != memories(7);
    expectWhole(kept, 7);
    std::error_code none;
    const bool cleared = kept.find("; AM;") == std::string::npos;
    if (!fs::exists(instance_.folder() / L"Backups", none)) {
      EXPECT_FALSE(cleared);
    } else if (!backup().empty()) {
      EXPECT_EQ(content(backup()), exported(7));
    }
  }
  EXPECT_GT(changed, 0) << "some kills came after the first write";
}

}  // namespace
}  // namespace kelvane::wine
