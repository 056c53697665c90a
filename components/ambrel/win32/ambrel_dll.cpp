// What the system asks of a component's library. The identities of the contract's interfaces are
// made here, whence the first header.
#include <initguid.h>

#include "base/win32/known_folders.h"
#include "components/ambrel/win32/ambrel_object.h"
#include "contract/win32/com.h"
#include "contract/win32/server/class_factory.h"
#include "contract/win32/server/registration.h"

namespace {

using namespace kelvane;

// The functions below are called without any context: what they share can only stand here.
com::ObjectCount objects;

com::Registration registration() {
  return {__uuidof(Ambrel),
          LIBID_AMBRELLib,
          __uuidof(IAmbrel),
          L"IAmbrel",
          __uuidof(_IAmbrelEvents),
          L"_IAmbrelEvents",
          L"Ambrel frequency component",
          L"Kelvane.Ambrel"};
}

HRESULT makeObject(com::ObjectCount& count, com::ComPtr<IUnknown>& object) {
  com::TypeLibrary types;
  const HRESULT code = com::readTypeLibrary(__uuidof(IAmbrel), __uuidof(Ambrel), types);
  if (FAILED(code)) return code;
  object = static_cast<IAmbrel*>(new ambrel::AmbrelObject(
      count, std::move(types), com::ownFile().parent_path() / "data", userDataFolder()));
  return S_OK;
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID component, REFIID iid, void** object) {
  return com::getClassObject(component, __uuidof(Ambrel), objects, makeObject, iid, object);
}

STDAPI DllCanUnloadNow() { return objects.none() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return com::registerComponent(registration()); }

STDAPI DllUnregisterServer() { return com::unregisterComponent(registration()); }

STDAPI DllInstall(BOOL install, PCWSTR words) {
  return com::install(registration(), install != FALSE, words);
}
