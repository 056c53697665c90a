#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "base/barrier.h"

namespace kelvane::win32 {

/// Tells the operator that what he asked for by this message did not succeed, where he asked for
/// anything. A window that cannot be painted is left as it is.
void tellFailure(HWND window, UINT message, const std::string& why);

/// Runs what a window does with a message. What it throws ends here and is noted; where the message
/// was the operator's own doing he is told. Answers whether nothing was thrown.
template <class Work>
bool windowBarrier(HWND window, UINT message, Work&& work) noexcept {
  return barrier("answering a window's message", std::forward<Work>(work),
                 [=](const std::string& why) { tellFailure(window, message, why); });
}

}  // namespace kelvane::win32
