#include "contract/win32/server/message_boxes.h"

#include "base/win32/utf16.h"

namespace kelvane::com {

MessageBoxes::~MessageBoxes() = default;

void MessageBoxes::show(const std::string& title, const std::string& words) {
  std::erase_if(boxes_, [](const auto& box) { return !box->running(); });
  boxes_.push_back(std::make_unique<DialogThread>());
  boxes_.back()->start([title = wide(title), words = wide(words)] {
    // Without an owner: one of another thread would be disabled, and waited for at the end.
    MessageBoxW(nullptr, words.c_str(), title.c_str(),
                MB_OK | MB_ICONWARNING | MB_TOPMOST | MB_SETFOREGROUND);
  });
}

}  // namespace kelvane::com
