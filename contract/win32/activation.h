#pragma once

#include <filesystem>
#include <string>

#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::com {

/// A component that was opened, or why there is none.
struct OpenedComponent {
  ComPtr<IDispatch> object;  ///< none where the component is not available
  std::string reason;        ///< in words, for a log; empty where there is an object

  explicit operator bool() const { return static_cast<bool>(object); }
};

/// The folder that the running program was started from.
std::filesystem::path programFolder();

/// Creates a component's object. The file beside the program is the one that is used where there is
/// one, also when it turns out to be damaged: a broken installation shows, and an older registered
/// component does not take its place unseen. Where there is no such file the registered component
/// is used. The calling thread has initialised COM for single-threaded use.
OpenedComponent openComponent(const std::wstring& fileName, REFCLSID component);

/// The same with the folder that stands for the program's own.
OpenedComponent openComponent(const std::filesystem::path& folder, const std::wstring& fileName,
                              REFCLSID component);

}  // namespace kelvane::com
