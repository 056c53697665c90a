#pragma once

#include <array>
#include <string>

#include "ui/colours.h"
#include "ui/control.h"
#include "ui/meter_bar.h"

namespace kelvane {

/// Everything that the main window `MAin` shows, as plain values under the controls' names.
struct MainView {
  std::string caption;
  bool hourglass = false;
  bool onTop = false;
  ColourChoice colours = ColourChoice::AsSystem;

  TabRow TabStrip;
  Control FrqFrame, FrqDotit, FrqFocus, FrqBfo, RxMask, RxWhy;
  std::array<Control, 9> FrqDigit;
  std::array<Control, 2> LockImg;
  Control SM, SQ;
  MeterBar meter;
  std::array<Control, 4> IO;
  std::array<Control, 5> ModEvent;
  std::array<Control, 3> GenEvent;
  Control Config;
  std::array<Control, 8> Opener;
  std::array<Control, 2> VStep, IStep;
  Control LChn, VChn, IChn, IBank, VBank;
  Control Band, FDif, BMod, BFlt;
  Control RNG, FAlt, HFF;
  Control DDESts, UtcTime;
  Control Announced;

  bool operator==(const MainView&) const = default;
};

}  // namespace kelvane
