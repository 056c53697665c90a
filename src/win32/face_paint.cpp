#include <algorithm>

#include "win32/colours.h"
#include "win32/face.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr COLORREF kPanelEdge = RGB(70, 74, 80);
constexpr COLORREF kPanelText = RGB(120, 126, 134);

COLORREF textColour(const Face& face) {
  const COLORREF fore = resolved(face.shown().fore);
  return face.shown().enabled ? fore : blended(fore, resolved(face.shown().back), 120);
}

UINT alignment(Align align) {
  return align == Align::Left ? DT_LEFT : align == Align::Right ? DT_RIGHT : DT_CENTER;
}

void paintLabel(const Face& face) {
  paintLine(face.window(), wide(face.shown().text), face.font(), textColour(face),
            resolved(face.shown().back), alignment(face.row().align));
}

/// A selected digit is shown in the colours exchanged.
void paintDigit(const Face& face, const Painting& on) {
  const bool marked = face.shown().selected;
  const COLORREF back = resolved(face.shown().back);
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
  on.fill(on.area(), GetSysColor(COLOR_BTNFACE));
  on.round(on.area(), scaled(12, face.dpi()), resolved(face.shown().back), kPanelEdge);
  for (const Engraving& engraving : engravings())
    on.text(wide(engraving.text).c_str(), scaledArea(engraving.place, face.dpi()), face.font(),
            kPanelText, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  for (const Place& point : groupPoints()) {
    const RECT area = scaledArea(point, face.dpi());
    on.round(area, area.right - area.left, kPanelText, kPanelText);
  }
}

/// A lamp in its colour, lit from the upper left.
void paintLamp(const Face& face, const Painting& on) {
  const COLORREF colour = resolved(face.shown().back);
  on.fill(on.area(), 0);
  RECT lamp = on.area();
  InflateRect(&lamp, -scaled(1, face.dpi()), -scaled(1, face.dpi()));
  on.round(lamp, lamp.right - lamp.left, colour, blended(colour, RGB(255, 255, 255), 90));
}

/// A push button; one that toggles stays down while it is pressed. The one with the keyboard focus
/// has a frame.
void paintButton(const Face& face, const Painting& on) {
  const bool down =
      face.shown().pressed || (SendMessageW(face.window(), BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
  const COLORREF around = GetSysColor(COLOR_BTNFACE);
  COLORREF colour = resolved(face.shown().back);
  if (!face.shown().enabled) colour = blended(colour, around, 170);
  on.fill(on.area(), around);
  RECT button = on.area();
  InflateRect(&button, -scaled(2, face.dpi()), -scaled(1, face.dpi()));
  const COLORREF edge = blended(colour, GetSysColor(COLOR_BTNTEXT), down ? 170 : 90);
  on.round(button, scaled(8, face.dpi()), down ? blended(colour, 0, 30) : colour, edge);
  if (GetFocus() == face.window()) {
    RECT frame = button;
    InflateRect(&frame, -scaled(3, face.dpi()), -scaled(3, face.dpi()));
    on.round(frame, scaled(5, face.dpi()), down ? blended(colour, 0, 30) : colour,
             GetSysColor(COLOR_HIGHLIGHT));
  }
  if (down) OffsetRect(&button, scaled(1, face.dpi()), scaled(1, face.dpi()));
  const COLORREF text = face.shown().enabled ? RGB(16, 20, 24) : GetSysColor(COLOR_GRAYTEXT);
  on.text(wide(face.shown().text).c_str(), button, face.font(), text,
          DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

/// A padlock; the first picture closed and green, the second open and orange.
void paintLock(const Face& face, const Painting& on) {
  on.fill(on.area(), resolved(face.shown().back));
  const bool closed = face.element() == 0;
  const COLORREF colour = resolved(face.shown().fore);
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
  if (face.row().kind == Kind::Label) return paintLabel(face);
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
      return on.fill(on.area(), 0);
  }
}

}  // namespace kelvane::win32
