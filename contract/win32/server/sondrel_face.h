#pragma once

#include "contract/Sondrel.h"
#include "contract/components.h"
#include "contract/names.h"
#include "contract/win32/server/dispatch_object.h"
#include "contract/win32/server/face.h"
#include "contract/win32/table_macros.h"

namespace kelvane::com {

/// Raises the receiver component's events at a connection point.
class ReceiverEventSource final : public ReceiverListener {
 public:
  explicit ReceiverEventSource(ConnectionPoint& sinks) : sinks_(sinks) {}

#define EVENT(name, params, args) \
  void name params override { sinks_.raise(DISPID(RxEvent::name) + 1 COMMA_BEFORE args); }
#include "contract/sondrel_events.inc"
#undef EVENT

 private:
  ConnectionPoint& sinks_;
};

/// The COM interface of a receiver component. What carries the component out derives from it.
class SondrelFace : public DispatchObject<ISondrel>, public ComWords {
 public:
  explicit SondrelFace(TypeLibrary types)
      : DispatchObject(std::move(types), __uuidof(_ISondrelEvents)) {}

#define ASK(name, Result, fallback, params, args)                           \
  STDMETHODIMP name(COMMA_AFTER params Result* result) override {           \
    return face::ask(component(), watch(), #name, &ReceiverComponent::name, \
                     result COMMA_BEFORE args);                             \
  }
#define TELL(name, params, args)                                                                \
  STDMETHODIMP name params override {                                                           \
    return face::tell(component(), watch(), #name, &ReceiverComponent::name COMMA_BEFORE args); \
  }
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL

 protected:
  /// Told of events, it raises them.
  ReceiverListener& listener() { return source_; }

 private:
  virtual ReceiverComponent& component() = 0;
  virtual CallWatch& watch() = 0;

  ReceiverEventSource source_{events()};
};

}  // namespace kelvane::com
