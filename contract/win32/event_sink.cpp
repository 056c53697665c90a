#include "contract/win32/event_sink.h"

#include <tuple>
#include <utility>

#include "base/barrier.h"
#include "contract/Ambrel.h"
#include "contract/Sondrel.h"
#include "contract/win32/com_ptr.h"
#include "contract/win32/variant.h"

namespace kelvane::com {

namespace {

template <class Listener, class... Params, std::size_t... Places>
HRESULT call(Listener& listener, void (Listener::*handler)(Params...), const DISPPARAMS& arguments,
             std::index_sequence<Places...>) {
  constexpr std::size_t count = sizeof...(Params);
  if (arguments.cArgs != count) return DISP_E_BADPARAMCOUNT;
  if (arguments.cNamedArgs != 0) return DISP_E_NONAMEDARGS;
  // The last argument stands first.
  [[maybe_unused]] auto values =
      std::make_tuple(valueOf<Params>(arguments.rgvarg[count - 1 - Places])...);
  if (!(std::get<Places>(values).has_value() && ...)) return DISP_E_TYPEMISMATCH;
  (listener.*handler)(*std::get<Places>(std::move(values))...);
  return S_OK;
}

template <class Listener, class... Params>
HRESULT call(Listener& listener, void (Listener::*handler)(Params...),
             const DISPPARAMS& arguments) {
  return call(listener, handler, arguments, std::index_sequence_for<Params...>());
}

using ReceiverCall = HRESULT (*)(ReceiverListener&, const DISPPARAMS&);
using FrequencyCall = HRESULT (*)(FrequencyListener&, const DISPPARAMS&);

#define EVENT(name, params, args)                               \
  [](ReceiverListener& listener, const DISPPARAMS& arguments) { \
    return call(listener, &ReceiverListener::name, arguments);  \
  },
constexpr ReceiverCall kReceiverCalls[] = {
#include "contract/sondrel_events.inc"
};
#undef EVENT

#define EVENT(name, params, args)                                \
  [](FrequencyListener& listener, const DISPPARAMS& arguments) { \
    return call(listener, &FrequencyListener::name, arguments);  \
  },
constexpr FrequencyCall kFrequencyCalls[] = {
#include "contract/ambrel_events.inc"
};
#undef EVENT

template <class Listener, std::size_t Count>
class ListenerSink final : public EventSink {
 public:
  using Call = HRESULT (*)(Listener&, const DISPPARAMS&);

  ListenerSink(REFIID events, const Call (&calls)[Count], Listener& listener)
      : EventSink(events), calls_(calls), listener_(&listener) {}
  void forget() override { listener_ = nullptr; }

 private:
  HRESULT deliver(DISPID event, const DISPPARAMS& arguments) override {
    if (event < 1 || event > static_cast<DISPID>(Count)) return DISP_E_MEMBERNOTFOUND;
    if (!listener_) return S_OK;
    return calls_[event - 1](*listener_, arguments);
  }

  const Call (&calls_)[Count];
  Listener* listener_;
};

}  // namespace

STDMETHODIMP EventSink::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP EventSink::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}

STDMETHODIMP EventSink::Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                               EXCEPINFO*, UINT*) {
  if (!arguments) return E_POINTER;
  const ComPtr<EventSink> self(this);  // a handler may end the connection that holds this sink
  try {
    return deliver(event, *arguments);
  } catch (...) {
    noteFault("hearing an event", thrownWords());
    return E_UNEXPECTED;
  }
}

EventSink* newSink(ReceiverListener& listener) {
  return new ListenerSink(__uuidof(_ISondrelEvents), kReceiverCalls, listener);
}

EventSink* newSink(FrequencyListener& listener) {
  return new ListenerSink(__uuidof(_IAmbrelEvents), kFrequencyCalls, listener);
}

}  // namespace kelvane::com
