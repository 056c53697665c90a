#pragma once

#include <atomic>

#include "contract/win32/com.h"

namespace kelvane::com {

/// A COM object of one interface: who asks for it by which name, and its references. It ends with
/// the last of them.
template <class Interface>
class ComObject : public Interface {
 public:
  /// With so many references to begin with.
  explicit ComObject(ULONG references = 0) : references_(references) {}
  virtual ~ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = goesBy(iid) ? static_cast<Interface*>(this) : nullptr;
    if (*object) AddRef();
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual bool goesBy(REFIID iid) const {
    return iid == IID_IUnknown || iid == __uuidof(Interface);
  }

 private:
  std::atomic<ULONG> references_;
};

}  // namespace kelvane::com
