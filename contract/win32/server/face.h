#pragma once

#include <concepts>
#include <exception>
#include <new>
#include <string>

#include "contract/types.h"
#include "contract/win32/com.h"
#include "contract/win32/variant.h"

namespace kelvane::com {

/// The words of the contract's tables, bound to COM's types: an interface method's parameters.
struct ComWords {
  using Index = short;
  using Hz = long;
  using Setting = long;
  using Count = long;
  using Channel = long;
  using Long = long;
  using Flag = VARIANT_BOOL;
  using Text = BSTR;
};

/// Told when a caller enters the component and leaves it again; calls may nest.
class CallWatch {
 public:
  virtual ~CallWatch() = default;
  virtual void callBegins() = 0;
  virtual void callEnds() = 0;
};

namespace face {

/// The HRESULT of an operation that ended so, with error information for whoever asks why.
HRESULT finished(Outcome outcome, const char* operation) noexcept;
HRESULT finishedBy(const char* operation, std::exception_ptr thrown) noexcept;

class InCall {
 public:
  explicit InCall(CallWatch& watch) : watch_(watch) { watch_.callBegins(); }
  InCall(const InCall&) = delete;
  InCall& operator=(const InCall&) = delete;
  ~InCall() { watch_.callEnds(); }

 private:
  CallWatch& watch_;
};

/// Runs an operation's work, which answers an Outcome; nothing that it throws leaves the component.
template <class Work>
HRESULT guarded(CallWatch& watch, const char* operation, Work work) noexcept {
  try {
    const InCall call(watch);
    return finished(work(), operation);
  } catch (...) {
    return finishedBy(operation, std::current_exception());
  }
}

template <class Param, class Given>
Param fromCom(Given given) {
  if constexpr (std::same_as<Param, bool>) {
    return given != VARIANT_FALSE;
  } else if constexpr (std::same_as<Param, std::string>) {
    return textOf(given);
  } else {
    return static_cast<Param>(given);
  }
}

inline void give(bool value, VARIANT_BOOL* out) { *out = value ? VARIANT_TRUE : VARIANT_FALSE; }
inline void give(std::int32_t value, long* out) { *out = value; }
inline void give(const std::string& value, BSTR* out) { *out = newBstr(value); }

template <class Component, class Base, class... Params, class... Args>
HRESULT tell(Component& component, CallWatch& watch, const char* name,
             Outcome (Base::*operation)(Params...), Args... args) noexcept {
  return guarded(watch, name, [&] { return (component.*operation)(fromCom<Params>(args)...); });
}

template <class Component, class Base, class Result, class... Params, class Out, class... Args>
HRESULT ask(Component& component, CallWatch& watch, const char* name,
            Answer<Result> (Base::*operation)(Params...), Out* result, Args... args) noexcept {
  if (!result) return E_POINTER;
  *result = Out();
  return guarded(watch, name, [&] {
    const Answer<Result> answer = (component.*operation)(fromCom<Params>(args)...);
    if (answer.ok()) give(answer.value(), result);
    return answer.outcome();
  });
}

template <class Component, class Base, class... Params, class... Args>
HRESULT walk(Component& component, CallWatch& watch, const char* name,
             Answer<FrqRecord> (Base::*operation)(Params...), long* position, long* count,
             long* frequency, Args... args) noexcept {
  if (!position || !count || !frequency) return E_POINTER;
  *position = *count = *frequency = 0;
  return guarded(watch, name, [&] {
    const Answer<FrqRecord> answer = (component.*operation)(fromCom<Params>(args)...);
    if (answer.ok()) {
      *position = answer.value().position;
      *count = answer.value().count;
      *frequency = answer.value().frequency;
    }
    return answer.outcome();
  });
}

}  // namespace face
}  // namespace kelvane::com
