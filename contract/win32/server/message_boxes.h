#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gui/win32/dialog_thread.h"

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
  /// The same with Retry and Cancel; `retry` is called on the box's thread when Retry was chosen.
  void ask(const std::string& title, const std::string& words, std::function<void()> retry);

 private:
  void open(const std::string& title, const std::string& words, UINT buttons,
            std::function<void()> retry);

  std::vector<std::unique_ptr<DialogThread>> boxes_;
};

}  // namespace kelvane::com
