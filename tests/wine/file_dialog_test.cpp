#include "win32/file_dialogs.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ui/file_flows.h"
#include "win32/message_boxes.h"

namespace kelvane::win32 {
namespace {

constexpr int kNameField = 0x47c;

std::wstring titleOf(HWND window) {
  wchar_t title[128] = L"";
  GetWindowTextW(window, title, 128);
  return title;
}

BOOL CALLBACK findDialog(HWND window, LPARAM found) {
  wchar_t name[32] = L"";
  GetClassNameW(window, name, 32);
  if (std::wstring(name) != L"#32770" || !IsWindowVisible(window)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

/// A hand that answers the dialogs of the test's own thread, one after the other.
class Hand {
 public:
  using Answer = std::function<void(HWND)>;

  explicit Hand(std::vector<Answer> answers)
      : thread_([owner = GetCurrentThreadId(), answers = std::move(answers), this] {
          for (const Answer& answer : answers) serve(owner, answer);
        }) {}
  ~Hand() { thread_.join(); }

  std::vector<std::wstring> titles;

 private:
  void serve(DWORD owner, const Answer& answer) {
    HWND dialog = nullptr;
    for (int i = 0; i < 1000 && !dialog; ++i, Sleep(10))
      EnumThreadWindows(owner, findDialog, reinterpret_cast<LPARAM>(&dialog));
    if (!dialog) return;
    Sleep(150);
    titles.push_back(titleOf(dialog));
    answer(dialog);
    for (int i = 0; i < 500 && IsWindowVisible(dialog); ++i) Sleep(10);
  }

  std::thread thread_;
};

Hand::Answer choose(const std::filesystem::path& name) {
  return [name](HWND dialog) {
    SendMessageW(GetDlgItem(dialog, kNameField), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(name.wstring().c_str()));
    PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
  };
}

Hand::Answer press(int button) {
  return [button](HWND dialog) { PostMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0); };
}

class FileDialogTest : public testing::Test {
 protected:
  FileDialogTest() {
    std::filesystem::create_directories(folder_);
    std::ofstream(existing_, std::ios::binary) << "old";
  }
  ~FileDialogTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::filesystem::path folder_ = std::filesystem::temp_directory_path() / L"kelvane-dialogs";
  std::filesystem::path existing_ = folder_ / L"mem\u00f6ry.txt";
  SystemFileDialogs dialogs_{nullptr};
  SystemMessageBoxes boxes_{nullptr};
  FileFlows flows_{dialogs_, boxes_};
};

TEST_F(FileDialogTest, OpensAnExistingFileAndLeavesTheNameWhenCancelled) {
  {
    Hand hand({press(IDCANCEL)});
    EXPECT_FALSE(flows_.openFile("Harrow_Mem", "txt"));
  }
  Hand hand({choose(existing_)});
  const auto name = flows_.openFile("Harrow_Mem", "txt");
  ASSERT_TRUE(name);
  EXPECT_EQ(std::filesystem::path(wide(*name)).filename(), existing_.filename());
}

TEST_F(FileDialogTest, AsksBeforeReplacingAndKeepsTheOldFileAside) {
  {
    Hand hand({choose(existing_), press(IDCANCEL)});
    EXPECT_FALSE(flows_.saveFile("x", "txt"));
    EXPECT_TRUE(std::filesystem::exists(existing_));
  }
  {
    Hand hand({choose(existing_), press(IDOK)});
    EXPECT_TRUE(flows_.saveFile("x", "txt"));
  }
  EXPECT_FALSE(std::filesystem::exists(existing_)) << "moved to its backup";
  int kept = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    std::ifstream file(entry.path(), std::ios::binary);
    kept += std::string(std::istreambuf_iterator<char>(file), {}) == "old";
  }
  EXPECT_EQ(kept, 1);
}

TEST_F(FileDialogTest, AddsTheExtensionAndSurvivesANameOfFourHundredCharacters) {
  const std::string longest(400, 'n');
  {
    Hand hand({press(IDCANCEL)});
    EXPECT_FALSE(flows_.saveFile(longest, "txt"));
  }
  Hand hand({choose(folder_ / L"fresh")});
  const auto name = flows_.saveFile(longest, "txt");
  ASSERT_TRUE(name);
  EXPECT_EQ(std::filesystem::path(wide(*name)).filename(), L"fresh.txt");
}

}  // namespace
}  // namespace kelvane::win32
