#pragma once

// Before all others: the identities of the contract's interfaces are made in the file that includes
// this.
#include <initguid.h>

#include <utility>

#include "contract/win32/server/class_factory.h"
#include "contract/win32/server/registration.h"
#include "contract/win32/server/type_library.h"

// What the system asks of a component's library.

/// Its class: `make(count, types)` makes an object, with no reference yet. What the functions share
/// can only stand beside them, since they are called without any context.
#define COMPONENT_CLASS(Component, Interface, make)                                               \
  static kelvane::com::ObjectCount objects;                                                       \
  static HRESULT makeObject(kelvane::com::ObjectCount& count,                                     \
                            kelvane::com::ComPtr<IUnknown>& object) {                             \
    kelvane::com::TypeLibrary types;                                                              \
    const HRESULT code =                                                                          \
        kelvane::com::readTypeLibrary(__uuidof(Interface), __uuidof(Component), types);           \
    if (FAILED(code)) return code;                                                                \
    object = static_cast<Interface*>(make(count, std::move(types)));                              \
    return S_OK;                                                                                  \
  }                                                                                               \
  STDAPI DllGetClassObject(REFCLSID component, REFIID iid, void** object) {                       \
    return kelvane::com::getClassObject(component, __uuidof(Component), objects, makeObject, iid, \
                                        object);                                                  \
  }                                                                                               \
  STDAPI DllCanUnloadNow() { return objects.none() ? S_OK : S_FALSE; }

/// How it is registered: `registration()` says it.
#define COMPONENT_REGISTRATION(registration)                                                 \
  STDAPI DllRegisterServer() { return kelvane::com::registerComponent(registration()); }     \
  STDAPI DllUnregisterServer() { return kelvane::com::unregisterComponent(registration()); } \
  STDAPI DllInstall(BOOL install, PCWSTR words) {                                            \
    return kelvane::com::install(registration(), install != FALSE, words);                   \
  }
