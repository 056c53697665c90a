#pragma once

#include <atomic>

#include "contract/components.h"
#include "contract/win32/com.h"

namespace kelvane::com {

/// The COM object that a component calls with its events. Lives as long as somebody holds it; its
/// listener may leave earlier.
class EventSink : public IDispatch {
 public:
  explicit EventSink(REFIID events) : events_(events) {}
  virtual ~EventSink() = default;

  /// The listener is gone: what still arrives is dropped.
  virtual void forget() = 0;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT*,
                      EXCEPINFO*, UINT*) override;

 private:
  /// Hands the event to the listener; may throw what the listener throws.
  virtual HRESULT deliver(DISPID event, const DISPPARAMS& arguments) = 0;

  const IID events_;
  std::atomic<ULONG> references_{0};
};

/// Sinks for the two components' events; held by nobody yet.
EventSink* newSink(ReceiverListener& listener);
EventSink* newSink(FrequencyListener& listener);

}  // namespace kelvane::com
