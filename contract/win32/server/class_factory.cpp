#include "contract/win32/server/class_factory.h"

#include <exception>
#include <new>

#include "contract/win32/com_object.h"

namespace kelvane::com {

namespace {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  ClassFactory(ObjectCount& count, MakeObject make) : counted_(count), count_(count), make_(make) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
      ComPtr<IUnknown> made;
      const HRESULT code = make_(count_, made);
      return FAILED(code) ? code : made->QueryInterface(iid, object);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      return E_UNEXPECTED;
    }
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    if (lock)
      count_.add();
    else
      count_.remove();
    return S_OK;
  }

 private:
  const Counted counted_;
  ObjectCount& count_;
  const MakeObject make_;
};

}  // namespace

HRESULT getClassObject(REFCLSID asked, REFCLSID offered, ObjectCount& count, MakeObject make,
                       REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (asked != offered) return CLASS_E_CLASSNOTAVAILABLE;
  const ComPtr<IClassFactory> factory(new (std::nothrow) ClassFactory(count, make));
  return factory ? factory->QueryInterface(iid, object) : E_OUTOFMEMORY;
}

}  // namespace kelvane::com
