#pragma once

#include <string>

#include "contract/win32/com.h"

namespace kelvane::com {

/// How a component's class is known to the system.
struct Registration {
  CLSID component;
  GUID library;  ///< of the type library embedded in the file, version 1.0
  IID operations;
  const wchar_t* operationsName;
  IID events;
  const wchar_t* eventsName;
  std::wstring name;       ///< what a person reads
  std::wstring programId;  ///< what a script creates, such as Kelvane.Sondrel
};

/// Registers the own file as the component: for all users where the caller may write there (an
/// administrator), else for the calling user alone. Done whole or not at all.
HRESULT registerComponent(const Registration& registration);

/// Takes back what registering wrote, for the user and, where the caller may, for all users. Being
/// unregistered already is no failure.
HRESULT unregisterComponent(const Registration& registration);

}  // namespace kelvane::com
