// The timing component's library. The identities of the contract's interfaces are made here, whence
// the first header.
#include <initguid.h>

#include "benchmarks/wine/timing_sondrel/timing_object.h"
#include "contract/win32/server/class_factory.h"

namespace {

using namespace kelvane;

// The functions below are called without any context: what they share can only stand here.
com::ObjectCount objects;

HRESULT makeObject(com::ObjectCount& count, com::ComPtr<IUnknown>& object) {
  com::TypeLibrary types;
  const HRESULT code = com::readTypeLibrary(__uuidof(ISondrel), __uuidof(Sondrel), types);
  if (FAILED(code)) return code;
  object = static_cast<ISondrel*>(new bench::TimingObject(count, std::move(types)));
  return S_OK;
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID component, REFIID iid, void** object) {
  return com::getClassObject(component, __uuidof(Sondrel), objects, makeObject, iid, object);
}

STDAPI DllCanUnloadNow() { return objects.none() ? S_OK : S_FALSE; }
