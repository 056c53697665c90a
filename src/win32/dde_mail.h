#pragma once

#include <windows.h>

#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "contract/types.h"

namespace kelvane::win32 {

/// Texts on their way from the conversations' threads to the user-interface thread, with one
/// message to wake it for any number of them.
class DdeMail {
 public:
  using Letter = std::pair<Index, std::string>;

  /// `window` gets WM_APP when there is something to collect.
  explicit DdeMail(HWND window) : window_(window) {}

  /// From any thread. What nobody collects is kept up to a limit, the first texts.
  void post(Index rx, std::string text) {
    const std::lock_guard lock(mutex_);
    if (!window_ || letters_.size() >= kMost) return;
    if (letters_.empty()) PostMessageW(window_, WM_APP, 0, 0);
    letters_.emplace_back(rx, std::move(text));
  }

  std::deque<Letter> collect() {
    const std::lock_guard lock(mutex_);
    return std::exchange(letters_, {});
  }

  /// Nobody collects any more.
  void close() {
    const std::lock_guard lock(mutex_);
    window_ = nullptr;
    letters_.clear();
  }

 private:
  static constexpr std::size_t kMost = 4096;

  std::mutex mutex_;
  HWND window_;
  std::deque<Letter> letters_;
};

}  // namespace kelvane::win32
