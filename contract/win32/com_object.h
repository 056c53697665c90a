#pragma once

#include <atomic>

#include "contract/win32/com.h"

namespace kelvane::com {

/// A COM object of one interface, and of others beside it: who asks for it by which name, and its
/// references. It ends with the last of them.
template <class Interface, class... Others>
class ComObject : public Interface, public Others... {
 public:
  /// With so many references to begin with.
  explicit ComObject(ULONG references = 0) : references_(references) {}
  virtual ~ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = interfaceOf(iid);
    if (*object) AddRef();
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      // Ending may hold and release again (a sink that looks back); that must not end it twice.
      ++references_;
      delete this;
    }
    return left;
  }

 protected:
  /// The object by that name; null where it has none such.
  virtual void* interfaceOf(REFIID iid) {
    if (iid == IID_IUnknown || iid == __uuidof(Interface)) return static_cast<Interface*>(this);
    void* found = nullptr;
    ((iid == __uuidof(Others) ? void(found = static_cast<Others*>(this)) : void()), ...);
    return found;
  }

 private:
  std::atomic<ULONG> references_;
};

}  // namespace kelvane::com
