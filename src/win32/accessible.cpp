#include "win32/accessible.h"

#include <initguid.h>
#include <oleacc.h>

#include <string>

#include "win32/text.h"

namespace kelvane::win32 {

namespace {

long roleOf(Kind kind) {
  switch (kind) {
    case Kind::Digit:
      return ROLE_SYSTEM_SPINBUTTON;
    case Kind::Keys:
      return ROLE_SYSTEM_TEXT;
    case Kind::Toggle:
      return ROLE_SYSTEM_CHECKBUTTON;
    case Kind::Button:
      return ROLE_SYSTEM_PUSHBUTTON;
    case Kind::Lock:
    case Kind::Lamp:
      return ROLE_SYSTEM_GRAPHIC;
    case Kind::Tabs:
      return ROLE_SYSTEM_PAGETABLIST;
    case Kind::Panel:
      return ROLE_SYSTEM_GROUPING;
    default:
      return ROLE_SYSTEM_STATICTEXT;
  }
}

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

}  // namespace

void speakAs(HWND window, std::string_view name) {
  if (IAccPropServices* const service = annotations())
    service->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME,
                            wide(name).c_str());
}

void speakAs(HWND window, const ControlRow& row, int element) {
  // Buttons say their caption, which the system reads by itself.
  const std::string number = row.count > 1 ? " " + std::to_string(element + 1) : "";
  if (row.kind != Kind::Button) speakAs(window, std::string(row.speak) + number);
  IAccPropServices* const service = annotations();
  if (!service) return;
  VARIANT role;
  role.vt = VT_I4;
  role.lVal = roleOf(row.kind);
  service->SetHwndProp(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_ROLE,
                       role);
}

}  // namespace kelvane::win32
