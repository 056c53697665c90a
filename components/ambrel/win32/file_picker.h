#pragma once

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

namespace kelvane::ambrel {

/// The system's dialog for choosing a file to open, on a thread of its own: its message loop would
/// keep the panel's from seeing keys.
class FilePicker {
 public:
  FilePicker() = default;
  /// Closes a dialog that is open.
  ~FilePicker();
  FilePicker(const FilePicker&) = delete;
  FilePicker& operator=(const FilePicker&) = delete;

  struct Request {
    HWND owner;  ///< takes no input meanwhile
    std::wstring title;
    /// Descriptions and patterns, each ended by a zero.
    std::wstring filter;
  };
  using Chosen = std::function<void(const std::filesystem::path& file)>;

  /// Opens the dialog; false while one is open. `chosen` is called on the dialog's thread when the
  /// operator chose a file.
  bool ask(Request request, Chosen chosen);

 private:
  void end();

  std::thread thread_;
  std::atomic<DWORD> threadId_{0};
  std::atomic<bool> open_{false};
};

}  // namespace kelvane::ambrel
