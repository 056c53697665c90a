#pragma once

#include <windows.h>

#include "base/win32/system_library.h"
#include "ui/colours.h"

namespace kelvane::win32 {

/// A control's colour as the screen has it now.
inline COLORREF resolved(Colour colour) {
  return colour.isSystem() ? GetSysColor(static_cast<int>(colour.value & 0xFF)) : colour.value;
}

/// Whether the user has asked Windows for high contrast.
inline bool highContrast() {
  HIGHCONTRASTW chosen{};
  chosen.cbSize = sizeof chosen;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof chosen, &chosen, 0) &&
         (chosen.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

/// Whether the user wants programs dark; no for a Windows that does not ask.
inline bool systemPrefersDark() {
  constexpr wchar_t kPersonalize[] =
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
  DWORD light = 1, size = sizeof light;
  const LSTATUS asked = RegGetValueW(HKEY_CURRENT_USER, kPersonalize, L"AppsUseLightTheme",
                                     RRF_RT_REG_DWORD, nullptr, &light, &size);
  return asked == ERROR_SUCCESS && light == 0;
}

/// What windows draw themselves with now. Ask again when the choice changed, and on
/// WM_SETTINGCHANGE and WM_SYSCOLORCHANGE.
inline const Palette& paletteNow(ColourChoice choice) {
  return paletteFor(choice, {.contrast = highContrast(), .dark = systemPrefersDark()});
}

/// What the program's windows are drawn with now; one for all of them, changed by the main window.
class ScreenColours {
 public:
  const Palette& now() const { return *palette_; }
  /// What we draw inside dialogs: around it lie the system's own controls, and those are light.
  const Palette& dialogs() const { return *dialogs_; }
  /// The choice or the system is, or may be, another one.
  void choose(ColourChoice choice) {
    palette_ = &paletteNow(choice);
    dialogs_ = &paletteNow(ColourChoice::Light);
  }

 private:
  const Palette* palette_ = &paletteNow(ColourChoice::AsSystem);
  const Palette* dialogs_ = &paletteNow(ColourChoice::Light);
};

/// Has Windows draw a window's caption dark, where it offers that.
inline void darkenCaption(HWND window, bool dark) {
  using Set = HRESULT WINAPI(HWND, DWORD, const void*, DWORD);
  static auto* const set = systemFunction<Set>(L"dwmapi.dll", "DwmSetWindowAttribute");
  constexpr DWORD kDarkMode = 20;
  const BOOL value = dark;
  if (set) set(window, kDarkMode, &value, sizeof value);
}

/// A colour moved towards another by a share of 0 to 255.
inline COLORREF blended(COLORREF from, COLORREF to, int share) {
  const auto mix = [share](int a, int b) { return a + (b - a) * share / 255; };
  return RGB(mix(GetRValue(from), GetRValue(to)), mix(GetGValue(from), GetGValue(to)),
             mix(GetBValue(from), GetBValue(to)));
}

}  // namespace kelvane::win32
