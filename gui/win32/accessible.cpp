#include "gui/win32/accessible.h"

#include <initguid.h>
#include <oleacc.h>

#include "base/win32/utf16.h"

namespace kelvane::win32 {

namespace {

/// How eagerly changes of a text are spoken: the system's `LiveSetting` property. Not all
/// compilers' headers know it.
constexpr GUID kLiveSetting{
    0xc12bcd8e, 0x2a8e, 0x4950, {0x8a, 0xe7, 0x36, 0x25, 0x11, 0x1d, 0x58, 0xeb}};
constexpr long kPolite = 1;
constexpr DWORD kLiveRegionChanged = 0x8019;

IAccPropServices* makeAnnotations() {
  IAccPropServices* service = nullptr;
  CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                   reinterpret_cast<void**>(&service));
  return service;
}

/// The service that annotates windows; null where the system has none.
IAccPropServices* annotations() {
  static IAccPropServices* const service = makeAnnotations();
  return service;
}

void setNumber(HWND window, const GUID& property, long number) {
  IAccPropServices* const service = annotations();
  if (!service) return;
  VARIANT value;
  value.vt = VT_I4;
  value.lVal = number;
  service->SetHwndProp(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, property, value);
}

}  // namespace

void speakAs(HWND window, std::string_view name) {
  if (IAccPropServices* const service = annotations())
    service->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME,
                            wide(name).c_str());
}

void giveRole(HWND window, long role) { setNumber(window, PROPID_ACC_ROLE, role); }

void makeAnnounced(HWND window) { setNumber(window, kLiveSetting, kPolite); }

void announce(HWND window) {
  NotifyWinEvent(kLiveRegionChanged, window, OBJID_CLIENT, CHILDID_SELF);
}

}  // namespace kelvane::win32
