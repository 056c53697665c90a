#pragma once

#include <windows.h>

#include "ui/colours.h"
#include "ui/meter_bar.h"

namespace kelvane::win32 {

/// Paints a meter's bar into a rectangle: segments that grow taller above S9, the peak as a bar
/// that stands, the mean as a triangle at the foot, the squelch threshold as a dashed line. What
/// lies between the segments is the ground that `colours` has for its window.
void paintMeterBar(HDC to, const RECT& area, const MeterBar& bar, const Colours& colours, UINT dpi);

/// Paints the words of the bar's scale below a bar of this area's width.
void paintMeterScale(HDC to, const RECT& area, bool decibels, HFONT font, const Colours& colours);

/// A level alone, three units high: on a tab or in a narrow row. Above S9 it is in the other colour
/// and, since that is not to be the only sign, parted from what is below by a gap.
void paintLevelLine(HDC to, const RECT& area, int level, const Colours& colours);

}  // namespace kelvane::win32
