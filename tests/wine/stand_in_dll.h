#pragma once

// Before all others: the identities of the contract's interfaces are made in the file that includes
// this.
#include <initguid.h>

#include "contract/win32/server/class_factory.h"
#include "contract/win32/server/sondrel_face.h"

namespace kelvane::test {

// The library's functions are called without any context: what they share can only stand here.
inline com::ObjectCount standInObjects;

template <class Object>
HRESULT makeStandIn(com::ObjectCount& count, com::ComPtr<IUnknown>& object) {
  com::TypeLibrary types;
  const HRESULT code = com::readTypeLibrary(__uuidof(ISondrel), __uuidof(Sondrel), types);
  if (FAILED(code)) return code;
  object = static_cast<ISondrel*>(new Object(count, std::move(types)));
  return S_OK;
}

}  // namespace kelvane::test

/// The functions of a library whose receiver component is an Object.
#define STAND_IN_SONDREL(Object)                                                   \
  STDAPI DllGetClassObject(REFCLSID component, REFIID iid, void** object) {        \
    using namespace kelvane;                                                       \
    return com::getClassObject(component, __uuidof(Sondrel), test::standInObjects, \
                               test::makeStandIn<Object>, iid, object);            \
  }                                                                                \
  STDAPI DllCanUnloadNow() { return kelvane::test::standInObjects.none() ? S_OK : S_FALSE; }
