#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/win32/dialog_thread.h"

namespace kelvane::com {

/// Message boxes that nobody waits for. Each has a thread of its own, so that neither the component
/// nor the program that uses it stands still behind one; with their owner they are taken away.
class MessageBoxes {
 public:
  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;
  ~MessageBoxes();

  /// Shows the words, in UTF-8, and returns at once.
  void show(const std::string& title, const std::string& words);

 private:
  std::vector<std::unique_ptr<DialogThread>> boxes_;
};

}  // namespace kelvane::com
