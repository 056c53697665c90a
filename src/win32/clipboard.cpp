#include "win32/clipboard.h"

#include <algorithm>
#include <cstring>

#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// Longest text that is looked at: no command of the panel wants more.
constexpr std::size_t kLongestTaken = 4096;

/// The clipboard, held open. Another program may hold it at the moment.
class Open {
 public:
  explicit Open(HWND owner) : open_(OpenClipboard(owner) != 0) {}
  ~Open() {
    if (open_) CloseClipboard();
  }
  Open(const Open&) = delete;
  Open& operator=(const Open&) = delete;
  explicit operator bool() const { return open_; }

 private:
  bool open_;
};

}  // namespace

std::string SystemClipboard::text() {
  const Open clipboard(owner_);
  const HANDLE data = clipboard ? GetClipboardData(CF_UNICODETEXT) : nullptr;
  const auto* text = data ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr;
  if (!text) return {};
  const std::size_t room = std::min<std::size_t>(GlobalSize(data) / sizeof(wchar_t), kLongestTaken);
  const std::string result = narrow({text, std::find(text, text + room, L'\0')});
  GlobalUnlock(data);
  return result;
}

void SystemClipboard::setText(const std::string& text) {
  const std::wstring content = wide(text);
  const std::size_t size = (content.size() + 1) * sizeof(wchar_t);
  const Open clipboard(owner_);
  if (!clipboard) return;
  EmptyClipboard();
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  if (!memory) return;
  std::memcpy(GlobalLock(memory), content.c_str(), size);
  GlobalUnlock(memory);
  if (!SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
}

}  // namespace kelvane::win32
