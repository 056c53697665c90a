#include "contract/win32/variant.h"

#include <new>

#include "base/win32/utf16.h"

namespace kelvane::com {

namespace {

bool isNumber(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_BOOL:
      return true;
    default:
      return false;
  }
}

/// The value itself where a reference was given. A script language passes its variables so.
bool follow(const VARIANT& from, Variant& to) {
  return SUCCEEDED(VariantCopyInd(&to, const_cast<VARIANT*>(&from)));
}

/// A number of any width as one of the wanted type; false where it does not fit.
bool convertNumber(const VARIANT& from, VARTYPE wanted, Variant& to) {
  Variant value;
  if (!follow(from, value) || !isNumber(value.vt)) return false;
  return SUCCEEDED(VariantChangeTypeEx(&to, &value, LOCALE_INVARIANT, 0, wanted));
}

}  // namespace

BSTR newBstr(std::string_view utf8) {
  const std::wstring text = wide(utf8);
  BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (!result) throw std::bad_alloc();
  return result;
}

std::string textOf(BSTR text) {
  return text ? narrow(std::wstring_view(text, SysStringLen(text))) : std::string();
}

template <>
std::optional<std::int16_t> valueOf(const VARIANT& variant) {
  if (variant.vt == VT_I2) return variant.iVal;
  Variant number;
  if (!convertNumber(variant, VT_I2, number)) return std::nullopt;
  return number.iVal;
}

template <>
std::optional<std::int32_t> valueOf(const VARIANT& variant) {
  if (variant.vt == VT_I4) return variant.lVal;
  Variant number;
  if (!convertNumber(variant, VT_I4, number)) return std::nullopt;
  return number.lVal;
}

template <>
std::optional<bool> valueOf(const VARIANT& variant) {
  if (variant.vt == VT_BOOL) return variant.boolVal != VARIANT_FALSE;
  Variant flag;
  if (!convertNumber(variant, VT_BOOL, flag)) return std::nullopt;
  return flag.boolVal != VARIANT_FALSE;
}

template <>
std::optional<std::string> valueOf(const VARIANT& variant) {
  if (variant.vt == VT_BSTR) return textOf(variant.bstrVal);
  Variant text;
  if (!follow(variant, text) || text.vt != VT_BSTR) return std::nullopt;
  return textOf(text.bstrVal);
}

}  // namespace kelvane::com
