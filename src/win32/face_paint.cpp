#include <algorithm>

#include "win32/colours.h"
#include "win32/face.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// The set that a control lies among: the black panel's, or that of the window around it.
const Colours& setOf(const Face& face) {
  const Kind kind = face.row().kind;
  const bool button = kind == Kind::Button || kind == Kind::Toggle;
  return button ? face.palette().windows : face.palette().panel;
}

COLORREF ground(const Face& face) {
  return resolved(face.palette().ground(face.shown().back, setOf(face)));
}

COLORREF ink(const Face& face) {
  return resolved(face.palette().ink(face.shown().fore, setOf(face)));
}

/// A label, lamp or lock that the hand presses lights up.
COLORREF groundUnder(const Face& face, COLORREF ground, COLORREF ink) {
  const bool pressed = face.row().kind != Kind::Text && face.handPressed();
  return pressed ? blended(ground, ink, 70) : ground;
}

COLORREF textColour(const Face& face) {
  if (face.shown().enabled) return ink(face);
  return resolved(face.palette().contrast ? setOf(face).faint : setOf(face).quiet);
}

UINT alignment(Align align) {
  return align == Align::Left ? DT_LEFT : align == Align::Right ? DT_RIGHT : DT_CENTER;
}

/// Letters on a label with a ground of its own must stand out from that.
COLORREF labelInk(const Face& face) {
  const Palette& palette = face.palette();
  const Colour back = palette.ground(face.shown().back, setOf(face));
  const bool own =
      !palette.contrast && face.shown().back != kBlack && !face.shown().back.isSystem();
  return own ? resolved(palette.lettersOn(back)) : textColour(face);
}

void paintLabel(const Face& face) {
  paintLine(face.window(), wide(face.shown().text), face.font(), labelInk(face),
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
  const Colours& panel = face.palette().panel;
  const COLORREF text = resolved(panel.quiet);
  on.fill(on.area(), resolved(face.palette().windows.window));
  on.round(on.area(), scaled(8, face.dpi()), resolved(panel.window), resolved(panel.line));
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
  const COLORREF black = resolved(face.palette().panel.window);
  const COLORREF colour = face.palette().contrast ? ink(face) : ground(face);
  const COLORREF around = groundUnder(face, black, colour);
  on.fill(on.area(), around);
  RECT lamp = on.area();
  InflateRect(&lamp, -scaled(1, face.dpi()), -scaled(1, face.dpi()));
  on.round(lamp, lamp.right - lamp.left, colour, blended(colour, ink(face), 60));
  if (face.shown().text == kLampLit) return;
  InflateRect(&lamp, -scaled(3, face.dpi()), -scaled(3, face.dpi()));
  on.round(lamp, lamp.right - lamp.left, around, around);
}

struct ButtonColours {
  COLORREF ground, edge, text, focus;
};

/// A button that takes no clicks lies flat on the window; one that is down has another ground.
ButtonColours colourOf(const Face& face, bool down) {
  const Palette& palette = face.palette();
  const Colours& set = palette.windows;
  const COLORREF edge = resolved(set.line), focus = resolved(set.focus);
  if (palette.contrast) {
    const Colour text = !face.shown().enabled ? set.faint : down ? set.onSelection : set.text;
    return {resolved(down ? set.pressed : set.button), edge, resolved(text),
            resolved(down ? set.onSelection : set.focus)};
  }
  if (!face.shown().enabled) return {resolved(set.window), edge, resolved(set.quiet), focus};
  const Colour given = palette.ground(face.shown().back, set);
  // One with a colour that means something keeps it while it is down.
  const Colour colour = down && given == set.button ? set.pressed : given;
  const Colour text =
      colour == set.button || colour == set.pressed ? set.text : palette.lettersOn(colour);
  COLORREF shown = resolved(colour);
  if (face.handPressed()) shown = blended(shown, resolved(text), 40);
  return {shown, blended(edge, resolved(text), down ? 120 : 30), resolved(text), focus};
}

/// A push button; one that toggles stays down while it is pressed. The one with the keyboard focus
/// has a frame.
void paintButton(const Face& face, const Painting& on) {
  const bool down = face.shown().pressed || face.handPressed();
  const ButtonColours colours = colourOf(face, down);
  on.fill(on.area(), resolved(face.palette().windows.window));
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
      return on.fill(on.area(), ground(face));
  }
}

}  // namespace kelvane::win32
