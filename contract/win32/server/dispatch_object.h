#pragma once

#include <utility>

#include "contract/win32/com_object.h"
#include "contract/win32/server/com_enumerator.h"
#include "contract/win32/server/connection_point.h"
#include "contract/win32/server/type_library.h"

namespace kelvane::com {

inline IConnectionPoint* givePoint(const ComPtr<IConnectionPoint>& point) {
  return ComPtr<IConnectionPoint>(point).detach();
}

/// What a component's object is besides its operations: late binding from the type library, error
/// information, and one source of events. It begins with no reference and ends with its last one.
template <class Interface>
class DispatchObject : public ComObject<Interface, IProvideClassInfo2, ISupportErrorInfo,
                                        IConnectionPointContainer> {
 public:
  DispatchObject(TypeLibrary types, REFIID events)
      : types_(std::move(types)), eventsIid_(events), events_(*this, events) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT place, LCID, ITypeInfo** info) override {
    return place == 0 ? giveInfo(types_.operations, info) : DISP_E_BADINDEX;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    if (!names || !ids) return E_POINTER;
    return DispGetIDsOfNames(types_.operations.get(), names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID operation, REFIID iid, LCID, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* fault, UINT* badArgument) override {
    if (iid != GUID{}) return DISP_E_UNKNOWNINTERFACE;
    const ComPtr<ITypeInfo> info = types_.operations;
    SetErrorInfo(0, nullptr);
    return DispInvoke(static_cast<Interface*>(this), info.get(), operation, flags, arguments,
                      result, fault, badArgument);
  }

  STDMETHODIMP GetClassInfo(ITypeInfo** info) override { return giveInfo(types_.coclass, info); }
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override {
    if (!guid) return E_POINTER;
    const bool known = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID;
    *guid = known ? eventsIid_ : GUID{};
    return known ? S_OK : E_INVALIDARG;
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == __uuidof(Interface) ? S_OK : S_FALSE;
  }

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override {
    using Points = ComEnumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>,
                                 givePoint>;
    return points ? Points::create({ComPtr<IConnectionPoint>(&events_)}, 0, points) : E_POINTER;
  }
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
    if (!point) return E_POINTER;
    const bool known = iid == eventsIid_;
    *point = known ? ComPtr<IConnectionPoint>(&events_).detach() : nullptr;
    return known ? S_OK : CONNECT_E_NOCONNECTION;
  }

 protected:
  ConnectionPoint& events() { return events_; }

 private:
  using Object =
      ComObject<Interface, IProvideClassInfo2, ISupportErrorInfo, IConnectionPointContainer>;

  /// It goes by what its interfaces extend, too.
  void* interfaceOf(REFIID iid) override {
    if (iid == IID_IDispatch) return static_cast<Interface*>(this);
    if (iid == IID_IProvideClassInfo) return static_cast<IProvideClassInfo2*>(this);
    return Object::interfaceOf(iid);
  }

  static HRESULT giveInfo(const ComPtr<ITypeInfo>& from, ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = ComPtr<ITypeInfo>(from).detach();
    return S_OK;
  }

  const TypeLibrary types_;
  const IID eventsIid_;
  ConnectionPoint events_;
};

}  // namespace kelvane::com
