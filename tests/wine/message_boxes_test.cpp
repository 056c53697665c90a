// The components' message boxes, which nobody waits for.
#include "contract/win32/server/message_boxes.h"

#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

constexpr int kMessageText = 0xffff;  // the control that holds a box's words

HWND boxTitled(const wchar_t* title) { return FindWindowW(L"#32770", title); }

/// A window of somebody else's on the same desktop, which counts how often it is asked to close.
class Bystander {
 public:
  Bystander() {
    WNDCLASSW type{};
    type.lpfnWndProc = procedure;
    type.lpszClassName = L"KelvaneBystander";
    RegisterClassW(&type);
    window_ = CreateWindowExW(0, type.lpszClassName, L"Bystander", WS_OVERLAPPEDWINDOW, 0, 0, 50,
                              50, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&asked_));
  }
  Bystander(const Bystander&) = delete;
  Bystander& operator=(const Bystander&) = delete;
  ~Bystander() { DestroyWindow(window_); }

  int asked() const { return asked_; }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != WM_CLOSE) return DefWindowProcW(window, message, wparam, lparam);
    ++*reinterpret_cast<int*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return 0;
  }

  HWND window_ = nullptr;
  int asked_ = 0;
};

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

TEST(MessageBoxes, AskNoOtherWindowToCloseHoweverSoonTheyEnd) {
  const Bystander bystander;
  for (int note = 0; note < 60; ++note) {
    com::MessageBoxes boxes;
    boxes.show("Kelvane note", "receivers.txt is damaged");
  }
  pump();
  EXPECT_EQ(bystander.asked(), 0);
}

}  // namespace kelvane::test
