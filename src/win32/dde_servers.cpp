#include "win32/dde_servers.h"

#include <utility>

#include "base/barrier.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kDigitsClass[] = L"KelvaneDigits";
/// How long the end of the program waits for servers to take their leave, ms.
constexpr DWORD kThreadsEndWithin = 200;

}  // namespace

DdeServers::DdeServers() {
  WNDCLASSW own{};
  own.hInstance = GetModuleHandleW(nullptr);
  own.lpszClassName = kDigitsClass;
  registerWindows(own);
  window_ = CreateWindowExW(0, kDigitsClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            own.hInstance, this);
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
    WaitForMultipleObjects(static_cast<DWORD>(threads.size()), threads.data(), TRUE,
                           kThreadsEndWithin);
  DestroyWindow(window_);
}

void DdeServers::setListener(std::function<void(Index, const std::string&)> listener) {
  listener_ = std::move(listener);
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
    moreCame_ = true;
    return;
  }
  delivering_ = true;
  for (const auto& letter : mail_->collect()) {
    if (listener_) barrier("taking a digit", [&] { listener_(letter.first, letter.second); });
  }
  delivering_ = false;
  if (std::exchange(moreCame_, false)) mail_->wake();
}

bool DdeServers::handle(UINT message, WPARAM, LPARAM, LRESULT&) {
  return message == WM_APP && (deliver(), true);
}

}  // namespace kelvane::win32
