#pragma once

#include "contract/types.h"

namespace kelvane {

/// The receiver component, as the panel sees it and as the component's core offers it. Rules and
/// units of each operation stand in contract/sondrel_operations.inc.
class ReceiverComponent {
 public:
  virtual ~ReceiverComponent() = default;
#define ASK(name, Result, fallback, params, args) virtual Answer<Result> name params = 0;
#define TELL(name, params, args) virtual Outcome name params = 0;
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL
};

/// Who hears the receiver component's events. Called on the user-interface thread, never from
/// inside a call of the listener's own.
class ReceiverListener {
 public:
  virtual ~ReceiverListener() = default;
#define EVENT(name, params, args) virtual void name params = 0;
#include "contract/sondrel_events.inc"
#undef EVENT
};

/// The frequency component; rules and units stand in contract/ambrel_operations.inc.
class FrequencyComponent {
 public:
  virtual ~FrequencyComponent() = default;
#define ASK(name, Result, fallback, params, args) virtual Answer<Result> name params = 0;
#define TELL(name, params, args) virtual Outcome name params = 0;
#define WALK(name, params, args) virtual Answer<FrqRecord> name params = 0;
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK
};

/// Who hears the frequency component's events; called as a ReceiverListener is.
class FrequencyListener {
 public:
  virtual ~FrequencyListener() = default;
#define EVENT(name, params, args) virtual void name params = 0;
#include "contract/ambrel_events.inc"
#undef EVENT
};

}  // namespace kelvane
