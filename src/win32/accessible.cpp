#include "win32/accessible.h"

#include <oleacc.h>

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

}  // namespace

void giveRole(HWND window, Kind kind) { giveRole(window, roleOf(kind)); }

}  // namespace kelvane::win32
