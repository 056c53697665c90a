#include "win32/dde_servers.h"

#include <utility>

#include "gui/win32/window_barrier.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kDigitsClass[] = L"KelvaneDigits";
/// How long the end of the program waits for servers to take their leave, ms.
constexpr DWORD kLeaveTaking = 200;

}  // namespace

DdeServers::DdeServers() {
  WNDCLASSW own{};
  own.lpfnWndProc = procedure;
  own.hInstance = GetModuleHandleW(nullptr);
  own.lpszClassName = kDigitsClass;
  RegisterClassW(&own);
  window_ = CreateWindowExW(0, kDigitsClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            own.hInstance, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  mail_ = std::make_shared<DdeMail>(window_);
}

DdeServers::~DdeServers() {
  mail_->close();
  std::vector<HANDLE> threads;
  for (const auto& conversation : conversations_) {
    conversation->stop();
    if (conversation->thread()) threads.push_back(conversation->thread());
  }
  if (!threads.empty())
    WaitForMultipleObjects(static_cast<DWORD>(threads.size()), threads.data(), TRUE, kLeaveTaking);
  DestroyWindow(window_);
}

void DdeServers::whenReceived(std::function<void(Index, const std::string&)> take) {
  take_ = std::move(take);
}

void DdeServers::link(const std::vector<std::string>& servers) {
  auto before = std::exchange(conversations_, {});
  for (std::size_t i = 0; i < servers.size(); ++i) {
    const bool stays = i < before.size() && before[i]->server() == servers[i];
    conversations_.push_back(
        stays ? std::exchange(before[i], nullptr)
              : DdeConversation::start(static_cast<Index>(i), servers[i], mail_));
  }
  for (const auto& conversation : before) {
    if (conversation) conversation->stop();
  }
}

void DdeServers::refresh() {
  for (const auto& conversation : conversations_) conversation->refresh();
}

DigitLink DdeServers::state(Index rx) const {
  const auto at = static_cast<std::size_t>(rx);
  return at < conversations_.size() ? conversations_[at]->state() : DigitLink::Closed;
}

void DdeServers::deliver() {
  // Whoever takes a key may let events run: keys that come meanwhile must not overtake the rest.
  if (delivering_) {
    again_ = true;
    return;
  }
  delivering_ = true;
  for (const auto& letter : mail_->collect()) {
    if (take_) barrier("taking a digit", [&] { take_(letter.first, letter.second); });
  }
  delivering_ = false;
  if (std::exchange(again_, false)) mail_->wake();
}

LRESULT CALLBACK DdeServers::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const self = reinterpret_cast<DdeServers*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message != WM_APP || !self) return DefWindowProcW(window, message, wParam, lParam);
  windowBarrier(window, message, [self] { self->deliver(); });
  return 0;
}

}  // namespace kelvane::win32
