#pragma once

#include <windows.h>

#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "base/win32/posted_wake.h"
#include "contract/types.h"

namespace kelvane::win32 {

/// Texts on their way from the conversations' threads to the user-interface thread, with one
/// message to wake it for any number of them.
class DdeMail {
 public:
  using Letter = std::pair<Index, std::string>;

  /// `window` gets WM_APP when there is something to collect.
  explicit DdeMail(HWND window) : wake_(std::in_place, window, WM_APP) {}

  /// From any thread. What nobody collects is kept up to a limit, the first texts.
  void post(Index rx, std::string text) {
    const std::lock_guard lock(mutex_);
    if (!wake_ || letters_.size() >= kMost) return;
    if (letters_.empty()) wake_->post();
    letters_.emplace_back(rx, std::move(text));
  }

  /// Asks for another collection.
  void wake() {
    const std::lock_guard lock(mutex_);
    if (wake_) wake_->post();
  }

  std::deque<Letter> collect() {
    const std::lock_guard lock(mutex_);
    return std::exchange(letters_, {});
  }

  /// Nobody collects any more.
  void close() {
    const std::lock_guard lock(mutex_);
    wake_.reset();
    letters_.clear();
  }

 private:
  static constexpr std::size_t kMost = 4096;

  std::mutex mutex_;
  std::optional<PostedWake> wake_;
  std::deque<Letter> letters_;
};

}  // namespace kelvane::win32
