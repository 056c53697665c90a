#include <windows.h>

#include <gtest/gtest.h>

#include "base/safe_file.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"

namespace kelvane::wine {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kAccessViolation = 0xC0000005;

/// Makes a thread of the program run where there is no code.
void breakFromOutside(DWORD processId) {
  const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId);
  const HANDLE thread = CreateRemoteThread(
      process, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(16), nullptr, 0, nullptr);
  EXPECT_NE(thread, nullptr) << GetLastError();
  CloseHandle(thread);
  CloseHandle(process);
}

fs::path onlyFile(const fs::path& folder, const char* extension) {
  std::error_code gone;
  fs::path found;
  for (const auto& entry : fs::directory_iterator(folder, gone)) {
    if (entry.path().extension() != extension) continue;
    EXPECT_TRUE(found.empty()) << "more than one";
    found = entry.path();
  }
  return found;
}

TEST(Crash, LeavesADumpAndATextSaysWhereAndKeepsTheLists) {
  const Instance instance(L"TestCrash");
  RunningPanel panel(instance.name());
  ASSERT_TRUE(panel.settledOn(0));
  const fs::path list = instance.folder() / L"receivers.txt";
  const auto before = readFile(list, 1 << 20);
  ASSERT_TRUE(before);

  breakFromOutside(panel.processId());
  const std::string words = panel.messageBox();
  const fs::path text = onlyFile(instance.folder() / L"crash", ".txt");
  const fs::path dump = onlyFile(instance.folder() / L"crash", ".dmp");
  ASSERT_FALSE(text.empty()) << words;
  ASSERT_FALSE(dump.empty()) << words;
  EXPECT_NE(words.find(pathText(text)), std::string::npos) << words;
  EXPECT_NE(words.find(pathText(dump)), std::string::npos) << words;
  panel.answer(IDOK);
  EXPECT_EQ(static_cast<DWORD>(panel.ended()), kAccessViolation);

  const std::string told = readFile(text, 1 << 20).value_or("");
  for (const char* part : {"Kelvane 1.0.0", "Windows ", "-bit program", "Fault c0000005 at ",
                           " RxConnState 1000 up\r\n"})
    EXPECT_NE(told.find(part), std::string::npos) << part << "\n" << told;
  const std::string dumped = readFile(dump, 4 << 20).value_or("");
  EXPECT_EQ(dumped.substr(0, 4), "MDMP");
  EXPECT_GT(dumped.size(), 1000u);
  EXPECT_EQ(readFile(list, 1 << 20), before);
  RunningPanel again(instance.name());
  EXPECT_TRUE(again.settledOn(0));
}

}  // namespace
}  // namespace kelvane::wine
