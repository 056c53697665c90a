#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "frequency/digit_server.h"
#include "gui/win32/window_base.h"
#include "win32/dde_conversation.h"
#include "win32/dde_mail.h"

namespace kelvane::win32 {

/// The servers of digits, through Windows' own DDE. Belongs to the user-interface thread, which it
/// never holds.
class DdeServers : public DigitServers, private WindowBase<DdeServers> {
 public:
  DdeServers();
  ~DdeServers() override;

  void setListener(std::function<void(Index, const std::string&)> listener) override;
  void link(const std::vector<std::string>& servers) override;
  void refresh() override;
  DigitLink state(Index rx) const override;

 private:
  friend WindowBase<DdeServers>;
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  void deliver();

  HWND window_;
  std::shared_ptr<DdeMail> mail_;
  std::function<void(Index, const std::string&)> listener_;
  std::vector<std::shared_ptr<DdeConversation>> conversations_;
  bool delivering_ = false;
  bool moreCame_ = false;  ///< more came while texts were delivered
};

}  // namespace kelvane::win32
