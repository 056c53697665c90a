#include <windows.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

/// A running program on 7 050 000 Hz.
class Keys : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(panel_.settledOn(0));
    panel_.type("7050\r");
    ASSERT_TRUE(shows("  7050000"));
  }
  bool shows(const std::string& digits) {
    return eventually([&] { return panel_.digits() == digits; });
  }

  const Instance instance_{L"TestKeys"};
  RunningPanel panel_{instance_.name()};
};

TEST_F(Keys, CopyAndPasteTheFrequencyInKilohertz) {
  panel_.type("7123.456\r");
  ASSERT_TRUE(shows("  7123456"));
  panel_.key('C', kCtrl);
  panel_.type("9000\r");
  ASSERT_TRUE(shows("  9000000"));
  panel_.key('V', kCtrl);
  EXPECT_TRUE(shows("  7123456")) << panel_.digits();
}

/// Puts a text on the clipboard; none leaves it with something else than a text.
void hold(const std::optional<std::wstring>& text) {
  ASSERT_TRUE(eventually([] { return OpenClipboard(nullptr) != 0; }));
  EmptyClipboard();
  const std::wstring content = text.value_or(L"7123");
  const std::size_t size = (content.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  std::memcpy(GlobalLock(memory), content.c_str(), size);
  GlobalUnlock(memory);
  SetClipboardData(text ? CF_UNICODETEXT : RegisterClipboardFormatW(L"KelvaneTest"), memory);
  CloseClipboard();
}

TEST_F(Keys, PasteNothingThatIsNoFrequencyOfTheReceiver) {
  const std::wstring tenMegabytes(5'000'000, L'7');
  for (const auto& text : std::vector<std::optional<std::wstring>>{
           std::nullopt, L"", L"abc", L"1e4", L"7.123.456", L"-5", L"0", L"30000", tenMegabytes}) {
    hold(text);
    panel_.key('V', kCtrl);
    panel_.key(VK_RIGHT);
    EXPECT_TRUE(shows("  7050500")) << panel_.digits();
    panel_.key(VK_LEFT);
    EXPECT_TRUE(shows("  7050000")) << panel_.digits();
  }
  hold(L" 7123,456\r\n");
  panel_.key('V', kCtrl);
  EXPECT_TRUE(shows("  7123456")) << panel_.digits();
}

TEST_F(Keys, TheWheelTunesByTheStepAndBySelectedDigit) {
  RECT area;
  GetWindowRect(panel_.control(id::Band), &area);
  pointAt(area.left + 5, area.top + 5);
  panel_.turnWheel(120);
  EXPECT_TRUE(shows("  7049500")) << panel_.digits();
  panel_.click(id::FrqDigit + 4);
  panel_.turnWheel(-120);
  EXPECT_TRUE(shows("  7059500")) << panel_.digits();
}

TEST_F(Keys, AWheelDriversMessageGivesTypingTheKeyboard) {
  constexpr UINT kFocusTyping = 4186;
  const auto focus = [&] {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(panel_.window(), nullptr), &info);
    return info.hwndFocus;
  };
  panel_.click(id::FrqDigit + 5);
  ASSERT_TRUE(eventually([&] { return focus() == panel_.control(id::FrqDigit + 5); }));
  SendMessageW(panel_.window(), kFocusTyping, 0, 0);
  EXPECT_EQ(focus(), panel_.control(id::FrqFocus));
  panel_.type("g");
  HWND log = nullptr;
  ASSERT_TRUE(eventually([&] { return (log = panel_.findWindow(L"KelvaneLog")) != nullptr; }));
  ASSERT_TRUE(giveKeyboard(log));
  SendMessageW(panel_.window(), kFocusTyping, 0, 0);
  EXPECT_EQ(GetAncestor(focus(), GA_ROOT), log) << "the operator is at work in another window";
}

}  // namespace
}  // namespace kelvane::wine
