#pragma once

#include <windows.h>

#include "ui/file_flows.h"

namespace kelvane::win32 {

/// Windows' own file dialogs, above a window; above the active one where none is given.
class SystemFileDialogs : public FileDialogs {
 public:
  explicit SystemFileDialogs(HWND owner) : owner_(owner) {}

  std::optional<std::string> open(const FileRequest& request) override;
  std::optional<std::string> save(const FileRequest& request) override;

 private:
  HWND owner_;
};

}  // namespace kelvane::win32
