#pragma once

#include <functional>
#include <string>

#include "base/safe_file.h"
#include "components/sondrel/drivers_model.h"
#include "contract/types.h"

namespace kelvane::sondrel {

/// The component's own windows. Called on the user-interface thread.
class ComponentWindows {
 public:
  virtual ~ComponentWindows() = default;
  /// Handle of the window above which the others open; 0 for none.
  virtual void setOwner(Long window) = 0;
  /// Lets the operator edit the list of receivers; returns when the dialog is closed. Meanwhile the
  /// dialog's message loop may tick the core and deliver its events. OK is `apply`: when that fails
  /// its words are shown and the dialog stays open.
  virtual void editDrivers(DriversModel& model, const std::function<Result<>()>& apply) = 0;
  /// Opens the settings of one receiver, or brings them to the front, and returns at once.
  virtual void showSettings(Index rx) = 0;
  /// Shows a message of the component's own (a file that cannot be read or written) and returns at
  /// once, before the operator has read it.
  virtual void tell(const std::string& words) = 0;
  /// Shows a message with Retry and Cancel and returns at once; `again` is called for Retry, on any
  /// thread.
  virtual void askAgain(const std::string& words, std::function<void()> again) = 0;
  /// The same for what nothing can go on without: returns when the operator has answered, false for
  /// Cancel. Asked only where there is an owner: before a script nobody may sit.
  virtual bool retry(const std::string& words) = 0;
};

}  // namespace kelvane::sondrel
