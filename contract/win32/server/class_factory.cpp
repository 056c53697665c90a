#include "contract/win32/server/class_factory.h"

#include <atomic>
#include <exception>
#include <new>

namespace kelvane::com {

namespace {

class ClassFactory final : public IClassFactory {
 public:
  ClassFactory(ObjectCount& count, MakeObject make) : counted_(count), count_(count), make_(make) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

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
  ~ClassFactory() = default;

  const Counted counted_;
  ObjectCount& count_;
  const MakeObject make_;
  std::atomic<ULONG> references_{0};
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
