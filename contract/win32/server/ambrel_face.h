#pragma once

#include "contract/Ambrel.h"
#include "contract/components.h"
#include "contract/names.h"
#include "contract/win32/server/dispatch_object.h"
#include "contract/win32/server/face.h"
#include "contract/win32/table_macros.h"

namespace kelvane::com {

/// Raises the frequency component's events at a connection point.
class FrequencyEventSource final : public FrequencyListener {
 public:
  explicit FrequencyEventSource(ConnectionPoint& sinks) : sinks_(sinks) {}

#define EVENT(name, params, args) \
  void name params override { sinks_.raise(DISPID(FrqEvent::name) + 1 COMMA_BEFORE args); }
#include "contract/ambrel_events.inc"
#undef EVENT

 private:
  ConnectionPoint& sinks_;
};

/// The COM interface of a frequency component. What carries the component out derives from it.
class AmbrelFace : public DispatchObject<IAmbrel>, public ComWords {
 public:
  explicit AmbrelFace(TypeLibrary types)
      : DispatchObject(std::move(types), __uuidof(_IAmbrelEvents)) {}

#define ASK(name, Result, fallback, params, args)                            \
  STDMETHODIMP name(COMMA_AFTER params Result* result) override {            \
    return face::ask(component(), watch(), #name, &FrequencyComponent::name, \
                     result COMMA_BEFORE args);                              \
  }
#define TELL(name, params, args)                                                                 \
  STDMETHODIMP name params override {                                                            \
    return face::tell(component(), watch(), #name, &FrequencyComponent::name COMMA_BEFORE args); \
  }
#define WALK(name, params, args)                                                                \
  STDMETHODIMP name(COMMA_AFTER params Long* position, Long* count, Long* frequency) override { \
    return face::walk(component(), watch(), #name, &FrequencyComponent::name, position, count,  \
                      frequency COMMA_BEFORE args);                                             \
  }
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK

 protected:
  /// Told of events, it raises them.
  FrequencyListener& listener() { return source_; }

 private:
  virtual FrequencyComponent& component() = 0;
  virtual CallWatch& watch() = 0;

  FrequencyEventSource source_{events()};
};

}  // namespace kelvane::com
