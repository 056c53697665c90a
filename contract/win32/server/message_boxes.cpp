#include "contract/win32/server/message_boxes.h"

#include <atomic>

#include "base/win32/utf16.h"

namespace kelvane::com {

struct MessageBoxes::Box {
  std::atomic<DWORD> threadId{0};
  std::atomic<bool> closed{false};
  std::thread thread;
};

namespace {

BOOL CALLBACK closeWindow(HWND window, LPARAM) {
  PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

}  // namespace

MessageBoxes::MessageBoxes() = default;

MessageBoxes::~MessageBoxes() {
  for (const auto& box : boxes_) {
    // The window may not be there yet; it is asked until it has gone.
    for (; !box->closed; Sleep(10)) EnumThreadWindows(box->threadId, closeWindow, 0);
    box->thread.join();
  }
}

void MessageBoxes::show(const std::string& title, const std::string& words) {
  open(title, words, MB_OK, {});
}

void MessageBoxes::ask(const std::string& title, const std::string& words,
                       std::function<void()> retry) {
  open(title, words, MB_RETRYCANCEL, std::move(retry));
}

void MessageBoxes::open(const std::string& title, const std::string& words, UINT buttons,
                        std::function<void()> retry) {
  boxes_.push_back(std::make_unique<Box>());
  Box& box = *boxes_.back();
  box.thread = std::thread(
      [&box, buttons, retry = std::move(retry), title = wide(title), words = wide(words)] {
        box.threadId = GetCurrentThreadId();
        // Without an owner: one of another thread would be disabled, and waited for at the end.
        const int answer = MessageBoxW(nullptr, words.c_str(), title.c_str(),
                                       buttons | MB_ICONWARNING | MB_TOPMOST | MB_SETFOREGROUND);
        if (answer == IDRETRY) retry();
        box.closed = true;
      });
}

}  // namespace kelvane::com
