#pragma once

#include "contract/components.h"
#include "contract/names.h"
#include "contract/win32/dispatch_client.h"
#include "contract/win32/table_macros.h"

namespace kelvane::com {

/// The receiver component behind a COM object that has its operations, all or some of them.
class ComReceiver final : public ReceiverComponent {
 public:
  explicit ComReceiver(ComPtr<IDispatch> component)
      : client_(std::move(component), kRxOperationNames) {}

#define ASK(name, Result, fallback, params, args)                                           \
  Answer<Result> name params override {                                                     \
    return client_.ask<Result>(std::size_t(RxOperation::name), fallback COMMA_BEFORE args); \
  }
#define TELL(name, params, args)                                           \
  Outcome name params override {                                           \
    return client_.tell(std::size_t(RxOperation::name) COMMA_BEFORE args); \
  }
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL

 private:
  DispatchClient client_;
};

}  // namespace kelvane::com
