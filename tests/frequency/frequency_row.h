#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fakes/row_window.h"

namespace kelvane {

using Commits = std::vector<fakes::RowWindow::Sent>;

/// A row that shows a receiver of 0 to 29 999 999 Hz, at 14 250 000 Hz, unlocked, ready to type.
struct FrequencyRow : testing::Test, fakes::RowWindow {
  FrequencyRow() { tuned(14'250'000); }

  void range(double max, double min, int resolution) {
    row.Boundary(max, min, resolution);
    row.LockAll(false);
  }
  void tuned(double hertz) {
    range(29'999'999, 0, 1);
    receiver = hertz;
    row.Unselect(true);
    row.Value(hertz);
  }
  std::string shown(double hertz) {
    row.SetValue(hertz);
    return digits();
  }
  std::string with(bool Control::*flag) const {
    std::string text;
    for (const Control& digit : FrqDigit) text += digit.*flag ? '1' : '0';
    return text;
  }
};

}  // namespace kelvane
