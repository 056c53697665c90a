#pragma once

#include "contract/components.h"
#include "contract/win32/com_object.h"

namespace kelvane::com {

/// The COM object that a component calls with its events. Lives as long as somebody holds it; its
/// listener may leave earlier.
class EventSink : public ComObject<IDispatch> {
 public:
  explicit EventSink(REFIID events) : events_(events) {}

  /// The listener is gone: what still arrives is dropped.
  virtual void forget() = 0;

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT*,
                      EXCEPINFO*, UINT*) override;

 private:
  void* interfaceOf(REFIID iid) override {
    return ComObject<IDispatch>::interfaceOf(iid == events_ ? IID_IDispatch : iid);
  }
  /// Hands the event to the listener; may throw what the listener throws.
  virtual HRESULT deliver(DISPID event, const DISPPARAMS& arguments) = 0;

  const IID events_;
};

/// Sinks for the two components' events; held by nobody yet.
EventSink* newSink(ReceiverListener& listener);
EventSink* newSink(FrequencyListener& listener);

}  // namespace kelvane::com
