#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>

#include "gui/win32/dialog_thread.h"

namespace kelvane::ambrel {

/// The system's dialog for choosing a file to open, on a thread of its own: its message loop would
/// keep the panel's from seeing keys. With its owner a dialog that is open is closed.
class FilePicker {
 public:
  struct Request {
    HWND owner;  ///< takes no input meanwhile
    std::wstring title;
    /// Descriptions and patterns, each ended by a zero.
    std::wstring filter;
  };
  using Chosen = std::function<void(const std::filesystem::path& file)>;

  /// Opens the dialog; false while one is open. `chosen` is called on the dialog's thread when the
  /// operator chose a file; `failed` where that could not be done.
  bool ask(Request request, Chosen chosen, Failed failed);

 private:
  DialogThread thread_;
};

}  // namespace kelvane::ambrel
