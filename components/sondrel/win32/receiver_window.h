#pragma once

#include <memory>
#include <string>

#include "components/sondrel/sondrel_core.h"
#include "gui/win32/dialog_window.h"

namespace kelvane::sondrel {

/// The settings of one receiver, in a window that stays open beside the panel. Closes by itself
/// when the receiver has gone from its place or has another name.
class ReceiverWindow : public win32::DialogWindow {
 public:
  Index rx() const { return rx_; }

 protected:
  ReceiverWindow(HWND owner, SondrelCore& core, Index rx, int width, int height);

  /// Shows the receiver as it is now; called several times a second.
  virtual void refresh() = 0;
  void command(int control, int notice) override;
  std::string linkWords() const;
  std::string signalWords() const;

  SondrelCore& core_;
  const Index rx_;

 private:
  void tick() override;

  std::string name_;
};

/// The window for a receiver of that kind. The receiver is there.
std::unique_ptr<ReceiverWindow> makeReceiverWindow(HWND owner, SondrelCore& core, Index rx);

/// How the receiver's link stands; empty where there is no such receiver.
std::string linkWords(const Receiver* receiver);

}  // namespace kelvane::sondrel
