#pragma once

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "contract/win32/com_object.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::com {

/// A COM enumeration over a list that was taken when it began. `Give` makes an item's copy for a
/// caller, who gives back the references in it.
template <class Interface, class Item, class Stored, Item (*Give)(const Stored&)>
class ComEnumerator final : public ComObject<Interface> {
 public:
  /// A new enumeration, with one reference for the caller.
  static HRESULT create(std::vector<Stored> items, std::size_t at, Interface** result) {
    auto* enumerator = new (std::nothrow) ComEnumerator(std::move(items), at);
    *result = enumerator;
    return enumerator ? S_OK : E_OUTOFMEMORY;
  }

  STDMETHODIMP Next(ULONG wanted, Item* items, ULONG* fetched) override {
    if (!items || (wanted != 1 && !fetched)) return E_POINTER;
    const ULONG given = std::min<ULONG>(wanted, static_cast<ULONG>(items_.size() - at_));
    for (ULONG i = 0; i < given; ++i) items[i] = Give(items_[at_++]);
    if (fetched) *fetched = given;
    return given == wanted ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) override {
    const ULONG skipped = std::min<ULONG>(count, static_cast<ULONG>(items_.size() - at_));
    at_ += skipped;
    return skipped == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    at_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** copy) override {
    return copy ? create(items_, at_, copy) : E_POINTER;
  }

 private:
  ComEnumerator(std::vector<Stored> items, std::size_t at)
      : ComObject<Interface>(1), items_(std::move(items)), at_(at) {}

  std::vector<Stored> items_;
  std::size_t at_;
};

}  // namespace kelvane::com
