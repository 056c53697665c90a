#pragma once

#include <windows.h>

namespace kelvane::win32 {

/// The text size that the user has chosen in Windows' settings, in percent: 100 to 225.
int textSize();

/// The resolution at which a window is laid out on a screen of `dpi`: enlarged by the user's text
/// size, as far as an inside of `width` by `height` 96ths of an inch has room on its screen.
UINT layoutResolution(HWND window, UINT dpi, int width, int height);

/// Says at what resolution a window has been laid out, for what lies in it.
void setResolution(HWND window, UINT resolution);
/// The resolution at which the window that this one lies in has been laid out.
UINT resolutionOf(HWND window);

}  // namespace kelvane::win32
