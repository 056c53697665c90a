#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "contract/types.h"
#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"
#include "contract/win32/variant.h"

namespace kelvane::com {

/// Calls a component's operations by name, as a script would: a component that lacks one answers
/// Unsupported for it and serves with the others. Operations are told by their row in `names`.
/// Used on the thread that created the component.
class DispatchClient {
 public:
  /// `names` outlives the client.
  DispatchClient(ComPtr<IDispatch> component, std::span<const std::string_view> names);

  /// The operation's value; the fallback where it failed, is lacking or answered another kind.
  template <class Result, class... Args>
  Answer<Result> ask(std::size_t operation, Result fallback, const Args&... args) {
    Variant result;
    const Outcome outcome = call(operation, &result, args...);
    if (outcome != Outcome::Done) return Answer<Result>::failed(std::move(fallback), outcome);
    if (auto value = valueOf<Result>(result)) return *std::move(value);
    return Answer<Result>::failed(std::move(fallback));
  }

  template <class... Args>
  Outcome tell(std::size_t operation, const Args&... args) {
    return call(operation, nullptr, args...);
  }

  template <class... Args>
  Answer<FrqRecord> walk(std::size_t operation, const Args&... args) {
    long position = 0;
    long count = 0;
    const Answer<Hz> frequency = ask<Hz>(operation, -1, args..., &position, &count);
    if (!frequency.ok()) return Answer<FrqRecord>::failed({}, frequency.outcome());
    return FrqRecord{static_cast<Long>(position), static_cast<Count>(count), frequency};
  }

 private:
  template <class... Args>
  Outcome call(std::size_t operation, VARIANT* result, const Args&... args) {
    std::array<Variant, sizeof...(Args)> variants{Variant(args)...};
    return invoke(operation, variants, result);
  }

  /// The arguments in the order in which they are written.
  Outcome invoke(std::size_t operation, std::span<Variant> args, VARIANT* result);
  /// None while the component could not be asked; DISPID_UNKNOWN where it lacks the operation.
  std::optional<DISPID> idOf(std::size_t operation);

  ComPtr<IDispatch> component_;
  std::span<const std::string_view> names_;
  std::vector<std::optional<DISPID>> ids_;  ///< asked once each: a name costs far more than a call
};

}  // namespace kelvane::com
