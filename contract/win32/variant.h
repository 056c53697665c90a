#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "contract/win32/com.h"

namespace kelvane::com {

/// A new BSTR of a UTF-8 text, which the caller frees; throws std::bad_alloc.
BSTR newBstr(std::string_view utf8);

/// The text of a BSTR; a null one is the empty text.
std::string textOf(BSTR text);

/// A VARIANT that frees what it holds.
class Variant : public VARIANT {
 public:
  Variant() { VariantInit(this); }
  explicit Variant(std::int16_t value) : Variant() {
    vt = VT_I2;
    iVal = value;
  }
  explicit Variant(std::int32_t value) : Variant() {
    vt = VT_I4;
    lVal = value;
  }
  explicit Variant(std::same_as<bool> auto value) : Variant() {
    vt = VT_BOOL;
    boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit Variant(const std::string& value) : Variant() {
    bstrVal = newBstr(value);
    vt = VT_BSTR;
  }
  /// One that a called operation writes through.
  explicit Variant(long* place) : Variant() {
    vt = VT_I4 | VT_BYREF;
    plVal = place;
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(this); }
};

/// The value as the contract's type; none where it is of another kind or does not fit. Numbers of
/// any width serve as a number, any number serves as a flag, only a text serves as a text.
template <class Value>
std::optional<Value> valueOf(const VARIANT& variant);

template <>
std::optional<std::int16_t> valueOf(const VARIANT& variant);
template <>
std::optional<std::int32_t> valueOf(const VARIANT& variant);
template <>
std::optional<bool> valueOf(const VARIANT& variant);
template <>
std::optional<std::string> valueOf(const VARIANT& variant);

}  // namespace kelvane::com
