#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "panel/start_up.h"

namespace kelvane::win32 {

/// An instance's one panel in the user's session: a named piece of memory that lasts as long as the
/// process that made it, however that ends, and tells the others which window it shows.
class SolePanel : public PanelClaim {
 public:
  explicit SolePanel(std::string_view instance);
  ~SolePanel() override;
  SolePanel(const SolePanel&) = delete;
  SolePanel& operator=(const SolePanel&) = delete;

  bool claim() override;
  Result claimOrShow() override;
  /// The window that stands for the instance from now on.
  void shownBy(HWND window);

  /// Asks the panel's window to come to the front, which it answers with kAnswer.
  static UINT showMessage();
  static constexpr LRESULT kAnswer = 4711;

 private:
  struct Shown {
    DWORD process;
    DWORD window;  ///< 0 before there is one; a window's handle has 32 bits that count
  };

  Shown shownNow() const;
  static bool bringForward(const Shown& shown);

  std::wstring name_;
  HANDLE memory_ = nullptr;  ///< while the instance is claimed
};

}  // namespace kelvane::win32
