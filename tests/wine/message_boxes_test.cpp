// The components' message boxes, which nobody waits for.
#include "contract/win32/server/message_boxes.h"

#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

constexpr int kMessageText = 0xffff;  // the control that holds a box's words

HWND boxTitled(const wchar_t* title) { return FindWindowW(L"#32770", title); }

}  // namespace

TEST(MessageBoxes, ShowTheirWordsWhileTheirOwnerGoesOn) {
  com::MessageBoxes boxes;
  boxes.show("Kelvane \u00fc", "receivers.txt is damaged \u2192 kept aside");
  ASSERT_TRUE(pumpUntil([] { return boxTitled(L"Kelvane \u00fc") != nullptr; }));
  wchar_t words[100] = L"";
  EXPECT_TRUE(pumpUntil(
      [&] { return GetDlgItemTextW(boxTitled(L"Kelvane \u00fc"), kMessageText, words, 100) > 0; }));
  EXPECT_EQ(std::wstring(words), L"receivers.txt is damaged \u2192 kept aside");
}

TEST(MessageBoxes, EndWithTheirOwnerHoweverSoonThatIs) {
  {
    com::MessageBoxes boxes;
    boxes.show("Kelvane first", "one");
    boxes.show("Kelvane second", "two");
  }
  EXPECT_EQ(boxTitled(L"Kelvane first"), nullptr);
  EXPECT_EQ(boxTitled(L"Kelvane second"), nullptr);
}

}  // namespace kelvane::test
