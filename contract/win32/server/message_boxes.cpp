#include "contract/win32/server/message_boxes.h"

#include "base/win32/utf16.h"

namespace kelvane::com {

MessageBoxes::~MessageBoxes() = default;

void MessageBoxes::show(const std::string& title, const std::string& words) {
  open(title, words, MB_OK, {});
}

void MessageBoxes::ask(const std::string& title, const std::string& words,
                       std::function<void()> retry) {
  open(title, words, MB_RETRYCANCEL, std::move(retry));
}

void MessageBoxes::open(const std::string& title, const std::string& words, UINT buttons,
                        std::function<void()> retry) {
  std::erase_if(boxes_, [](const auto& box) { return !box->running(); });
  boxes_.push_back(std::make_unique<DialogThread>());
  boxes_.back()->start(
      [buttons, retry = std::move(retry), title = wide(title), words = wide(words)] {
        // Without an owner: one of another thread would be disabled, and waited for at the end.
        const int answer = MessageBoxW(nullptr, words.c_str(), title.c_str(),
                                       buttons | MB_ICONWARNING | MB_TOPMOST | MB_SETFOREGROUND);
        if (answer == IDRETRY) retry();
      });
}

}  // namespace kelvane::com
