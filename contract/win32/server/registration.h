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

/// Registers the own file as the component for the calling user. Done whole or not at all.
HRESULT registerComponent(const Registration& registration);

/// Registers it for all users, which an administrator may. Refused with E_ACCESSDENIED where
/// somebody else may change the file or a folder above it: whoever can do that would have what is
/// his run in every program that uses the component, an administrator's too.
HRESULT registerForMachine(const Registration& registration);

/// What DllInstall does: "machine" means all users, no word the calling one; others are
/// E_INVALIDARG.
HRESULT install(const Registration& registration, bool wanted, const wchar_t* words);

/// Takes back what registering wrote, for the user and, where the caller may, for all users. Being
/// unregistered already is no failure.
HRESULT unregisterComponent(const Registration& registration);

}  // namespace kelvane::com
