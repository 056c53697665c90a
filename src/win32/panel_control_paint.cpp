#include <algorithm>

#include "win32/colours.h"
#include "win32/paint.h"
#include "win32/panel_control.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// The set that a control lies among: the black panel's, or that of the window around it.
const Colours& setOf(const PanelControl& control) {
  const Kind kind = control.row().kind;
  const bool button = kind == Kind::Button || kind == Kind::Toggle;
  return button ? control.palette().windows : control.palette().panel;
}

COLORREF ground(const PanelControl& control) {
  return resolved(control.palette().ground(control.shown().back, setOf(control)));
}

COLORREF ink(const PanelControl& control) {
  return resolved(control.palette().ink(control.shown().fore, setOf(control)));
}

/// A label, lamp or lock that the hand presses lights up.
COLORREF groundUnder(const PanelControl& control, COLORREF ground, COLORREF ink) {
  const bool pressed = control.row().kind != Kind::Text && control.handPressed();
  return pressed ? blended(ground, ink, 70) : ground;
}

COLORREF textColour(const PanelControl& control) {
  if (control.shown().enabled) return ink(control);
  return resolved(control.palette().contrast ? setOf(control).faint : setOf(control).quiet);
}

UINT alignment(Align align) {
  return align == Align::Left ? DT_LEFT : align == Align::Right ? DT_RIGHT : DT_CENTER;
}

/// Letters on a label with a ground of its own must stand out from that.
COLORREF labelInk(const PanelControl& control) {
  const Palette& palette = control.palette();
  const Colour back = palette.ground(control.shown().back, setOf(control));
  const bool own =
      !palette.contrast && control.shown().back != kBlack && !control.shown().back.isSystem();
  return own ? resolved(palette.lettersOn(back)) : textColour(control);
}

void paintLabel(const PanelControl& control) {
  paintLine(control.window(), wide(control.shown().text), control.font(), labelInk(control),
            groundUnder(control, ground(control), ink(control)), alignment(control.row().align));
}

/// A selected digit is shown in the colours exchanged.
void paintDigit(const PanelControl& control, const Painting& on) {
  const bool marked = control.shown().selected;
  const COLORREF back = ground(control);
  const COLORREF fore = textColour(control);
  on.fill(on.area(), back);
  RECT box = on.area();
  InflateRect(&box, -scaled(2, control.dpi()), 0);
  if (marked) on.round(box, scaled(8, control.dpi()), fore, fore);
  on.text(wide(control.shown().text).c_str(), on.area(), control.font(), marked ? back : fore,
          DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

RECT scaledArea(const Place& at, UINT dpi) {
  return {scaled(at.left, dpi), scaled(at.top, dpi), scaled(at.left + at.width, dpi),
          scaled(at.top + at.height, dpi)};
}

void paintPanel(const PanelControl& control, const Painting& on) {
  const Colours& panel = control.palette().panel;
  const COLORREF text = resolved(panel.quiet);
  on.fill(on.area(), resolved(control.palette().windows.window));
  on.round(on.area(), scaled(8, control.dpi()), resolved(panel.window), resolved(panel.line));
  for (const Engraving& engraving : engravings())
    on.text(wide(engraving.text).c_str(), scaledArea(engraving.place, control.dpi()),
            control.font(), text, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  for (const Place& point : groupPoints()) {
    const RECT area = scaledArea(point, control.dpi());
    on.round(area, area.right - area.left, text, text);
  }
}

/// A lamp in its colour; one that is lit is a disc, any other a ring.
void paintLamp(const PanelControl& control, const Painting& on) {
  const COLORREF black = resolved(control.palette().panel.window);
  const COLORREF colour = control.palette().contrast ? ink(control) : ground(control);
  const COLORREF around = groundUnder(control, black, colour);
  on.fill(on.area(), around);
  RECT lamp = on.area();
  InflateRect(&lamp, -scaled(1, control.dpi()), -scaled(1, control.dpi()));
  on.round(lamp, lamp.right - lamp.left, colour, blended(colour, ink(control), 60));
  if (control.shown().text == kLampLit) return;
  InflateRect(&lamp, -scaled(3, control.dpi()), -scaled(3, control.dpi()));
  on.round(lamp, lamp.right - lamp.left, around, around);
}

struct ButtonColours {
  COLORREF ground, edge, text, focus;
};

/// A button that takes no clicks lies flat on the window; one that is down has another ground.
ButtonColours colourOf(const PanelControl& control, bool down) {
  const Palette& palette = control.palette();
  const Colours& set = palette.windows;
  const COLORREF edge = resolved(set.line), focus = resolved(set.focus);
  if (palette.contrast) {
    const Colour text = !control.shown().enabled ? set.faint : down ? set.onSelection : set.text;
    return {resolved(down ? set.pressed : set.button), edge, resolved(text),
            resolved(down ? set.onSelection : set.focus)};
  }
  if (!control.shown().enabled) return {resolved(set.window), edge, resolved(set.quiet), focus};
  const Colour given = palette.ground(control.shown().back, set);
  // One with a colour that means something keeps it while it is down.
  const Colour colour = down && given == set.button ? set.pressed : given;
  const Colour text =
      colour == set.button || colour == set.pressed ? set.text : palette.lettersOn(colour);
  COLORREF shown = resolved(colour);
  if (control.handPressed()) shown = blended(shown, resolved(text), 40);
  return {shown, blended(edge, resolved(text), down ? 120 : 30), resolved(text), focus};
}

/// A push button; one that toggles stays down while it is pressed. The one with the keyboard focus
/// has a frame.
void paintButton(const PanelControl& control, const Painting& on) {
  const bool down = control.shown().pressed || control.handPressed();
  const ButtonColours colours = colourOf(control, down);
  on.fill(on.area(), resolved(control.palette().windows.window));
  RECT button = on.area();
  InflateRect(&button, -scaled(2, control.dpi()), -scaled(1, control.dpi()));
  on.round(button, scaled(8, control.dpi()), colours.ground, colours.edge);
  if (GetFocus() == control.window()) {
    RECT frame = button;
    InflateRect(&frame, -scaled(3, control.dpi()), -scaled(3, control.dpi()));
    on.round(frame, scaled(5, control.dpi()), colours.ground, colours.focus);
  }
  if (down) OffsetRect(&button, scaled(1, control.dpi()), scaled(1, control.dpi()));
  on.text(wide(control.shown().text).c_str(), button, control.font(), colours.text,
          DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

/// A padlock; the first picture closed and green, the second open and orange.
void paintLock(const PanelControl& control, const Painting& on) {
  const bool closed = control.element() == 0;
  const COLORREF colour = ink(control);
  on.fill(on.area(), groundUnder(control, ground(control), colour));
  const auto at = [&control](int x, int y) {
    return POINT{scaled(x, control.dpi()), scaled(y, control.dpi())};
  };
  HPEN pen = CreatePen(PS_SOLID, std::max(2, scaled(2, control.dpi())), colour);
  const HGDIOBJ before = SelectObject(on.dc(), pen);
  const HGDIOBJ hollow = SelectObject(on.dc(), GetStockObject(NULL_BRUSH));
  const POINT from = at(closed ? 7 : 11, 4), to = at(closed ? 17 : 21, 20);
  RoundRect(on.dc(), from.x, from.y, to.x, to.y, scaled(10, control.dpi()),
            scaled(10, control.dpi()));
  SelectObject(on.dc(), hollow);
  SelectObject(on.dc(), before);
  DeleteObject(pen);
  const POINT top = at(4, 13), bottom = at(20, 25);
  on.fill(RECT{top.x, top.y, bottom.x, bottom.y}, colour);
}

}  // namespace

void paintPanelControl(const PanelControl& control) {
  if (control.row().kind == Kind::Label || control.row().kind == Kind::Text)
    return paintLabel(control);
  const Painting on(control.window());
  switch (control.row().kind) {
    case Kind::Digit:
      return paintDigit(control, on);
    case Kind::Panel:
      return paintPanel(control, on);
    case Kind::Lock:
      return paintLock(control, on);
    case Kind::Lamp:
      return paintLamp(control, on);
    case Kind::Toggle:
    case Kind::Button:
      return paintButton(control, on);
    default:
      return on.fill(on.area(), ground(control));
  }
}

}  // namespace kelvane::win32
