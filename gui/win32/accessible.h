#pragma once

#include <windows.h>

#include <string_view>

namespace kelvane::win32 {

/// Gives a window the name that a screen reader speaks, in the place of its text.
void speakAs(HWND window, std::string_view name);

/// Says what a window is, by the roles of oleacc.h, where its class does not tell.
void giveRole(HWND window, long role);

/// Makes a window's text one that screen readers say when it changes, as soon as they have ended
/// what they are saying.
void makeAnnounced(HWND window);

/// The text of a window that is announced has changed.
void announce(HWND window);

}  // namespace kelvane::win32
