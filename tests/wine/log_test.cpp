#include <windows.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "base/win32/utf16.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

namespace fs = std::filesystem;

/// The field in which a grid's cell is edited, and the fields of its search.
constexpr int kFindField = 5;

const std::string kSecond =
    "    648000|AM   |  6000|Slow |2026-03-13|23:59:59|VOICE|Quiet|Quill|\r\n";
const std::string kFirst =
    "   7050000|USB  |  2400|Fast |2026-03-14|08:00:00|VOICE|net|Harrow|\r\n";
/// As programs before this one wrote it: dates in the system's form of their time.
const std::string kOlder = "  15050000|AM   |  6000|FAST |3/14/02|6:05:09 PM|Unknown||Harrow|\r\n";

/// A program with its first receiver up, and a log in a folder of the test's own.
class LogWindowTest : public testing::Test {
 protected:
  LogWindowTest() {
    // One receiver: no other one's link, coming up late, takes the display.
    instance_.writeReceivers("Version=1\r\n[Receiver 1]\r\nName=Attic\r\n");
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~LogWindowTest() override {
    panel_.reset();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  void write(const std::string& content) const {
    std::ofstream(path_, std::ios::binary) << content;
  }
  std::string file() const {
    std::stringstream content;
    content << std::ifstream(path_, std::ios::binary).rdbuf();
    return content.str();
  }
  void start() {
    panel_ = std::make_unique<RunningPanel>(instance_.name(), programFolder(), folder_);
    ASSERT_TRUE(panel_->settledOn(0));
  }
  /// A key of the panel that opens the log.
  void open(wchar_t key) {
    PostMessageW(panel_->control(id::FrqFocus), WM_CHAR, key, 0);
    ASSERT_TRUE(eventually([&] { return (log_ = panel_->findWindow(L"KelvaneLog")) != nullptr; }));
    ASSERT_TRUE(giveKeyboard(log_));
    ASSERT_TRUE(eventually([&] { return IsWindowEnabled(item(IDOK)) != 0; }));
  }
  HWND item(int id) const { return GetDlgItem(log_, id); }
  void press(int id) const { PostMessageW(item(id), BM_CLICK, 0, 0); }
  bool gone() const {
    return eventually([&] { return !IsWindow(log_); });
  }
  bool caption(const std::string& wanted) const {
    return eventually([&] { return textOf(log_) == wanted; });
  }
  /// The current cell, as it is spoken.
  bool speaks(const std::string& part) const {
    return eventually([&] { return spoken().find(part) != std::string::npos; });
  }
  std::string spoken() const { return textOf(item(id::PadGrd)); }
  void key(WORD code, int modifiers = 0) const { panel_->keyHere(code, modifiers); }
  bool digits(const std::string& wanted) const {
    return eventually([&] { return panel_->digits() == wanted; });
  }

  const Instance instance_{L"TestLog"};
  fs::path folder_ = fs::temp_directory_path() / L"kelvane-log-test";
  fs::path path_ = folder_ / L"scratchpad.txt";
  std::unique_ptr<RunningPanel> panel_;
  HWND log_ = nullptr;
};

TEST_F(LogWindowTest, StoresCommentsAndShowsTheRecordAgain) {
  write(kFirst + kOlder);
  start();
  panel_->type("15050\r");
  ASSERT_TRUE(digits(" 15050000"));
  open(L'g');
  EXPECT_TRUE(caption("Frequency logs [2 records]"));
  EXPECT_TRUE(speaks(", 15050000,")) << spoken();
  press(IDOK);
  ASSERT_TRUE(gone());
  EXPECT_EQ(file(), kFirst + kOlder);

  open(L' ');
  EXPECT_TRUE(caption("Frequency logs [3 records]"));
  EXPECT_FALSE(IsWindowEnabled(item(id::PadInsert)));
  for (const WORD letter : {'H', 'I'}) key(letter);
  key(VK_OEM_5, kShift);
  EXPECT_FALSE(GetWindowLongW(GetDlgItem(item(id::PadGrd), kEntry), GWL_STYLE) & ES_RIGHT);
  key(VK_RETURN);
  EXPECT_TRUE(speaks("Comments: hi/")) << spoken();
  EXPECT_TRUE(giveKeyboard(panel_->window()));
  EXPECT_TRUE(giveKeyboard(log_));
  EXPECT_TRUE(caption("Frequency logs [3 records]")) << "coming back adds nothing";
  press(IDOK);
  ASSERT_TRUE(gone());
  const std::string added = file().substr(kFirst.size() + kOlder.size());
  EXPECT_EQ(added.substr(0, 11), "  15050000|") << file();
  EXPECT_NE(added.find("|Unknown|hi/|"), std::string::npos) << added;
  open(L' ');
  EXPECT_TRUE(caption("Frequency logs [4 records]"));
}

TEST_F(LogWindowTest, AButtonPressedByTheMouseLeavesTheKeyboardWhereItWas) {
  write(kFirst + kOlder);
  start();
  open(L'g');
  const auto inGrid = [&] {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetWindowThreadProcessId(log_, nullptr), &info) &&
           info.hwndFocus == item(id::PadGrd);
  };
  ASSERT_TRUE(eventually(inGrid));
  RECT copy;
  GetWindowRect(item(id::PadCopy), &copy);
  panel_->clickAt(copy.left + 9, copy.top + 9);
  ASSERT_TRUE(eventually([&] { return !textOf(item(id::PadNotice)).empty(); }));
  EXPECT_TRUE(inGrid());
  panel_->pressAt(copy.left + 9, copy.top + 9);
  ASSERT_TRUE(eventually([&] { return !inGrid(); }));
  pointAt(copy.left + 9, copy.top - 99);
  panel_->release();
  EXPECT_TRUE(eventually(inGrid)) << "released beside it";
}

TEST_F(LogWindowTest, OnlyCancelDropsEdits) {
  write(kFirst);
  start();
  open(L'g');
  press(id::PadInsert);
  EXPECT_TRUE(caption("Frequency logs [2 records]"));
  press(id::PadCancel);
  ASSERT_TRUE(gone());
  EXPECT_EQ(file(), kFirst);
  open(L'g');
  EXPECT_TRUE(caption("Frequency logs [1 records]"));
  key('I', kAlt);
  ASSERT_TRUE(caption("Frequency logs [2 records]"));
  for (const WORD letter : {'H', 'I'}) key(letter);
  key(VK_RETURN);
  EXPECT_TRUE(speaks("Comments: hi")) << "letters are a comment and no keys: " << spoken();
  PostMessageW(log_, WM_CLOSE, 0, 0);
  ASSERT_TRUE(gone());
  EXPECT_EQ(std::ranges::count(file(), '\n'), 2);
  open(L'g');
  press(id::PadInsert);
  ASSERT_TRUE(caption("Frequency logs [3 records]"));
  panel_->close();
  EXPECT_EQ(panel_->ended(), 0);
  EXPECT_EQ(std::ranges::count(file(), '\n'), 3) << "the program's end keeps them too";
}

TEST_F(LogWindowTest, SortsFindsDeletesTakesBackAndSends) {
  write(kFirst + kOlder + kSecond);
  start();
  panel_->type("7050\r");
  ASSERT_TRUE(digits("  7050000"));
  open(L'g');
  ASSERT_TRUE(speaks(", 7050000,")) << spoken();
  RECT header{};
  GetWindowRect(GetDlgItem(item(id::PadGrd), 1), &header);
  panel_->clickAt(header.left + 20, (header.top + header.bottom) / 2);
  key(VK_HOME, kCtrl);
  EXPECT_TRUE(speaks(", 648000,")) << spoken();
  key(VK_DOWN, kShift);
  EXPECT_TRUE(speaks(", 7050000,")) << spoken();
  key(VK_UP, kShift);
  EXPECT_TRUE(digits("   648000")) << panel_->digits();
  key('F', kCtrl);
  ASSERT_TRUE(
      eventually([&] { return IsWindowVisible(GetDlgItem(item(id::PadGrd), kFindField)) != 0; }));
  for (const WORD letter : {'H', 'A', 'R', 'R'}) key(letter);
  EXPECT_TRUE(speaks("Receiver: Harrow")) << spoken();
  key(VK_ESCAPE);
  ASSERT_TRUE(IsWindow(log_)) << "closes the search and not the log";
  key(VK_DELETE);
  EXPECT_TRUE(caption("Frequency logs [2 records]"));
  // On a loaded machine Ctrl can be up again before its letter is looked at.
  const auto back = [&] { return textOf(log_) == "Frequency logs [3 records]"; };
  for (int attempt = 0; attempt < 5 && !back(); ++attempt) {
    key('Z', kCtrl);
    eventually(back, 2000);
  }
  EXPECT_TRUE(back());
  press(IDOK);
  ASSERT_TRUE(gone());
  EXPECT_EQ(file(), kSecond + kFirst + kOlder);
}

TEST_F(LogWindowTest, AFileThatAnotherProgramHoldsIsNamedAndNotReplaced) {
  write(kFirst);
  const HANDLE held =
      CreateFileW(path_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  start();
  open(L' ');
  EXPECT_TRUE(eventually([&] { return textOf(log_).find("Cannot read") != std::string::npos; }))
      << textOf(log_);
  press(IDOK);
  EXPECT_TRUE(eventually([&] { return textOf(item(id::PadNotice)).starts_with("Not saved"); }))
      << textOf(item(id::PadNotice));
  CloseHandle(held);
  EXPECT_EQ(file(), kFirst);
  press(IDOK);
  ASSERT_TRUE(gone()) << textOf(item(id::PadNotice));
  EXPECT_EQ(file().find(kFirst), 0u);
  EXPECT_EQ(std::ranges::count(file(), '\n'), 2);
}

TEST_F(LogWindowTest, WhatCannotBeWrittenAtTheEndIsToldAndOfferedAnotherPlace) {
  write(kFirst);
  for (const bool systemEnds : {false, true}) {
    start();
    open(L' ');
    ASSERT_TRUE(eventually([&] { return textOf(log_).find("records]") != std::string::npos; }));
    const HANDLE held =
        CreateFileW(path_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    const std::string words = "Error: the station log was not saved: ";
    if (systemEnds) {
      SendMessageW(panel_->window(), WM_QUERYENDSESSION, 0, 0);
      SendMessageW(panel_->window(), WM_ENDSESSION, TRUE, 0);
      panel_.reset();
      CloseHandle(held);
      panel_ = std::make_unique<RunningPanel>(instance_.name(), programFolder(), folder_);
      EXPECT_EQ(panel_->messageBox().rfind(words, 0), 0u) << "at the next start";
      panel_->answer(IDOK);
      ASSERT_TRUE(panel_->settledOn(0));
    } else {
      panel_->close();
      const std::string told = panel_->messageBox();
      EXPECT_EQ(told.rfind(words, 0), 0u) << told;
      EXPECT_NE(told.find("another place of your choice"), std::string::npos) << told;
      panel_->answer(IDCANCEL);
      EXPECT_EQ(panel_->ended(), 0);
      CloseHandle(held);
    }
  }
  EXPECT_TRUE(eventually([&] { return std::ranges::count(file(), '\n') == 3; })) << file();
}

/// Killed as soon as the record is seen, and in the midst of a save.
TEST_F(LogWindowTest, HasEveryRecordOnceThatWasSeenWheneverTheProgramIsKilled) {
  constexpr int kKills = 20, kRecords = 20'000;
  std::string log;
  for (int i = 0; i < kRecords; ++i) log += kFirst;
  write(log);
  const auto words = [](int records) {
    return "Frequency logs [" + std::to_string(records) + " records]";
  };
  int saved = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    start();
    open(L' ');
    ASSERT_TRUE(caption(words(kRecords + kill + 1))) << textOf(log_);
    const std::string before = file();
    // Slow machines and quick ones are both to be met in the midst of it.
    if (kill % 2 == 1) press(IDOK), Sleep(static_cast<DWORD>(kill * 25));
    panel_.reset();
    saved += file() != before ? 1 : 0;
    ASSERT_EQ(file().substr(0, log.size()), log) << "kill " << kill;
    ASSERT_TRUE(file().ends_with("|\r\n")) << "kill " << kill;
  }
  start();
  EXPECT_TRUE(eventually([&] { return std::ranges::count(file(), '\n') == kRecords + kKills; }))
      << "a start needs no hand to bring the last one in";
  std::printf("After %d of %d kills the save had come to its end.\n", saved, kKills / 2);
  // What the killed program kept goes when the file has it. Saves that were broken off leave what
  // they had written, for ten minutes.
  const auto files = [&] {
    return std::count_if(fs::directory_iterator(folder_), fs::directory_iterator(),
                         [](const auto& file) { return file.path().extension() != ".unfinished"; });
  };
  EXPECT_TRUE(eventually([&] { return files() == 6; })) << files() << ": log and five backups";
}

}  // namespace
}  // namespace kelvane::wine
