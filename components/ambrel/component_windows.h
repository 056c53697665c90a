#pragma once

#include <functional>
#include <string>

#include "contract/types.h"

namespace kelvane::ambrel {

class AmbrelCore;

/// The component's own windows. Called on the user-interface thread; every call returns at once,
/// with the window open and in front, and a window that is open already is only brought to the
/// front. The core outlives the windows' use of it.
class ComponentWindows {
 public:
  virtual ~ComponentWindows() = default;
  /// Handle of the window above which the others open; 0 for none.
  virtual void setOwner(Long window) = 0;
  virtual void showKnownList(AmbrelCore& core) = 0;
  virtual void showSource(AmbrelCore& core) = 0;
  virtual void showData(AmbrelCore& core) = 0;
  /// The receiver is elsewhere; called by each SetFrqFrequency that moves it.
  virtual void moved() {}
  /// Shows a message with Retry and Cancel; `again` is called for Retry, on any thread. Asked only
  /// where there is an owner: before a script nobody may sit. Does nothing where nobody is asked.
  virtual void askAgain(const std::string&, std::function<void()>) {}
};

}  // namespace kelvane::ambrel
