#include <algorithm>

#include "win32/colours.h"
#include "win32/face.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr COLORREF kPanelEdge = RGB(70, 74, 80);
constexpr COLORREF kPanelText = RGB(120, 126, 134);

/// Under high contrast the user's own colours take the place of the panel's: what a colour says is
/// then said by the text, and by lamps as rings and discs.
COLORREF ground(const Face& face) {
  return face.contrast() ? GetSysColor(COLOR_WINDOW) : resolved(face.shown().back);
}

COLORREF ink(const Face& face) {
  return face.contrast() ? GetSysColor(COLOR_WINDOWTEXT) : resolved(face.shown().fore);
}

/// A label, lamp or lock that the hand presses lights up.
COLORREF groundUnder(const Face& face, COLORREF ground, COLORREF ink) {
  const bool pressed = face.row().kind != Kind::Text && face.handPressed();
  return pressed ? blended(ground, ink, 70) : ground;
}

COLORREF textColour(const Face& face) {
  if (face.shown().enabled) return ink(face);
  return face.contrast() ? GetSysColor(COLOR_GRAYTEXT) : blended(ink(face), ground(face), 120);
}

UINT alignment(Align align) {
  return align == Align::Left ? DT_LEFT : align == Align::Right ? DT_RIGHT : DT_CENTER;
}

void paintLabel(const Face& face) {
  paintLine(face.window(), wide(face.shown().text), face.font(), textColour(face),
            groundUnder(face, ground(face), ink(face)), alignment(face.row().align));
}

/// A selected digit is shown in the colours exchanged.
void paintDigit(const Face& face, const Painting& on) {
  const bool marked = face.shown().selected;
  const COLORREF back = ground(face);
  const COLORREF fore = textColour(face);
  on.fill(on.area(), back);
  RECT box = on.area();
  InflateRect(&box, -scaled(2, face.dpi()), 0);
  if (marked) on.round(box, scaled(8, face.dpi()), fore, fore);
  on.text(wide(face.shown().text).c_str(), on.area(), face.font(), marked ? back : fore,
          DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

RECT scaledArea(const Place& at, UINT dpi) {
  return {scaled(at.left, dpi), scaled(at.top, dpi), scaled(at.left + at.width, dpi),
          scaled(at.top + at.height, dpi)};
}

void paintPanel(const Face& face, const Painting& on) {
  const COLORREF edge = face.contrast() ? ink(face) : kPanelEdge;
  const COLORREF text = face.contrast() ? ink(face) : kPanelText;
  on.fill(on.area(), GetSysColor(COLOR_BTNFACE));
  on.round(on.area(), scaled(12, face.dpi()), ground(face), edge);
  for (const Engraving& engraving : engravings())
    on.text(wide(engraving.text).c_str(), scaledArea(engraving.place, face.dpi()), face.font(),
            text, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  for (const Place& point : groupPoints()) {
    const RECT area = scaledArea(point, face.dpi());
    on.round(area, area.right - area.left, text, text);
  }
}

/// A lamp in its colour; one that is lit is a disc, any other a ring.
void paintLamp(const Face& face, const Painting& on) {
  const COLORREF colour = face.contrast() ? ink(face) : resolved(face.shown().back);
  const COLORREF around = groundUnder(face, face.contrast() ? ground(face) : 0, colour);
  on.fill(on.area(), around);
  RECT lamp = on.area();
  InflateRect(&lamp, -scaled(1, face.dpi()), -scaled(1, face.dpi()));
  on.round(lamp, lamp.right - lamp.left, colour, blended(colour, RGB(255, 255, 255), 90));
  if (face.shown().text == kLampLit) return;
  InflateRect(&lamp, -scaled(3, face.dpi()), -scaled(3, face.dpi()));
  on.round(lamp, lamp.right - lamp.left, around, around);
}

/// Letters that can be read on a ground, which may be one of the user's own dark colours.
COLORREF lettersOn(COLORREF ground) {
  const int light =
      (GetRValue(ground) * 299 + GetGValue(ground) * 587 + GetBValue(ground) * 114) / 1000;
  return light < 128 ? RGB(240, 243, 246) : RGB(16, 20, 24);
}

struct ButtonColours {
  COLORREF ground, edge, text, focus;
};

ButtonColours colourOf(const Face& face, bool down) {
  const bool hand = face.handPressed();
  const bool enabled = face.shown().enabled;
  const COLORREF face3d = GetSysColor(COLOR_BTNFACE), caption = GetSysColor(COLOR_BTNTEXT);
  const COLORREF grey = GetSysColor(COLOR_GRAYTEXT);
  if (face.contrast()) {
    const COLORREF text = down ? GetSysColor(COLOR_HIGHLIGHTTEXT) : caption;
    return {down ? GetSysColor(COLOR_HIGHLIGHT) : face3d, caption, enabled ? text : grey, text};
  }
  COLORREF colour = resolved(face.shown().back);
  if (!enabled) colour = blended(colour, face3d, 170);
  return {hand ? blended(colour, 0, 40) : colour, blended(colour, caption, down ? 170 : 90),
          enabled ? lettersOn(colour) : grey, GetSysColor(COLOR_HIGHLIGHT)};
}

/// A push button; one that toggles stays down while it is pressed. The one with the keyboard focus
/// has a frame.
void paintButton(const Face& face, const Painting& on) {
  const bool down = face.shown().pressed || face.handPressed();
  const ButtonColours colours = colourOf(face, down);
  on.fill(on.area(), GetSysColor(COLOR_BTNFACE));
  RECT button = on.area();
  InflateRect(&button, -scaled(2, face.dpi()), -scaled(1, face.dpi()));
  on.round(button, scaled(8, face.dpi()), colours.ground, colours.edge);
  if (GetFocus() == face.window()) {
    RECT frame = button;
    InflateRect(&frame, -scaled(3, face.dpi()), -scaled(3, face.dpi()));
    on.round(frame, scaled(5, face.dpi()), colours.ground, colours.focus);
  }
  if (down) OffsetRect(&button, scaled(1, face.dpi()), scaled(1, face.dpi()));
  on.text(wide(face.shown().text).c_str(), button, face.font(), colours.text,
          DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

/// A padlock; the first picture closed and green, the second open and orange.
void paintLock(const Face& face, const Painting& on) {
  const bool closed = face.element() == 0;
  const COLORREF colour = ink(face);
  on.fill(on.area(), groundUnder(face, ground(face), colour));
  const auto at = [&face](int x, int y) {
    return POINT{scaled(x, face.dpi()), scaled(y, face.dpi())};
  };
  HPEN pen = CreatePen(PS_SOLID, std::max(2, scaled(2, face.dpi())), colour);
  const HGDIOBJ before = SelectObject(on.dc(), pen);
  const HGDIOBJ hollow = SelectObject(on.dc(), GetStockObject(NULL_BRUSH));
  const POINT from = at(closed ? 7 : 11, 4), to = at(closed ? 17 : 21, 20);
  RoundRect(on.dc(), from.x, from.y, to.x, to.y, scaled(10, face.dpi()), scaled(10, face.dpi()));
  SelectObject(on.dc(), hollow);
  SelectObject(on.dc(), before);
  DeleteObject(pen);
  const POINT top = at(4, 13), bottom = at(20, 25);
  on.fill(RECT{top.x, top.y, bottom.x, bottom.y}, colour);
}

}  // namespace

void paintFace(const Face& face) {
  if (face.row().kind == Kind::Label || face.row().kind == Kind::Text) return paintLabel(face);
  const Painting on(face.window());
  switch (face.row().kind) {
    case Kind::Digit:
      return paintDigit(face, on);
    case Kind::Panel:
      return paintPanel(face, on);
    case Kind::Lock:
      return paintLock(face, on);
    case Kind::Lamp:
      return paintLamp(face, on);
    case Kind::Toggle:
    case Kind::Button:
      return paintButton(face, on);
    default:
      return on.fill(on.area(), face.contrast() ? ground(face) : 0);
  }
}

}  // namespace kelvane::win32
