#pragma once

#include "contract/components.h"
#include "contract/names.h"
#include "contract/win32/dispatch_client.h"
#include "contract/win32/table_macros.h"

namespace kelvane::com {

/// The frequency component behind a COM object that has its operations, all or some of them.
class ComFrequency final : public FrequencyComponent {
 public:
  explicit ComFrequency(ComPtr<IDispatch> component)
      : client_(std::move(component), kFrqOperationNames) {}

#define ASK(name, Result, fallback, params, args)                                            \
  Answer<Result> name params override {                                                      \
    return client_.ask<Result>(std::size_t(FrqOperation::name), fallback COMMA_BEFORE args); \
  }
#define TELL(name, params, args)                                            \
  Outcome name params override {                                            \
    return client_.tell(std::size_t(FrqOperation::name) COMMA_BEFORE args); \
  }
#define WALK(name, params, args)                                            \
  Answer<FrqRecord> name params override {                                  \
    return client_.walk(std::size_t(FrqOperation::name) COMMA_BEFORE args); \
  }
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK

 private:
  DispatchClient client_;
};

}  // namespace kelvane::com
