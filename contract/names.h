#pragma once

#include <array>
#include <string_view>

namespace kelvane {

// The contract's operations and events as lists of names, in interface order. The number of a row
// plus one is an event's dispatch id, and an operation's too where no FROM_ID stands before it.

#define ASK(name, Result, fallback, params, args) name,
#define TELL(name, params, args) name,
#define WALK(name, params, args) name,
#define EVENT(name, params, args) name,
enum class RxOperation {
#include "contract/sondrel_operations.inc"
  Count
};
enum class RxEvent {
#include "contract/sondrel_events.inc"
  Count
};
enum class FrqOperation {
#include "contract/ambrel_operations.inc"
  Count
};
enum class FrqEvent {
#include "contract/ambrel_events.inc"
  Count
};
#undef ASK
#undef TELL
#undef WALK
#undef EVENT

#define ASK(name, Result, fallback, params, args) std::string_view(#name),
#define TELL(name, params, args) std::string_view(#name),
#define WALK(name, params, args) std::string_view(#name),
#define EVENT(name, params, args) std::string_view(#name),
inline constexpr std::array kRxOperationNames = {
#include "contract/sondrel_operations.inc"
};
inline constexpr std::array kRxEventNames = {
#include "contract/sondrel_events.inc"
};
inline constexpr std::array kFrqOperationNames = {
#include "contract/ambrel_operations.inc"
};
inline constexpr std::array kFrqEventNames = {
#include "contract/ambrel_events.inc"
};
#undef ASK
#undef TELL
#undef WALK
#undef EVENT

}  // namespace kelvane
