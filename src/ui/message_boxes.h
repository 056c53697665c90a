#pragma once

#include <string>

namespace kelvane {

/// What a box offers. `SaveOrNot`: Save, Don't save and Cancel, in these words.
enum class Buttons { Ok, OkCancel, SaveOrNot };
/// `Ok` is Save too, `No` is Don't save. A box that is closed without a button answers `Cancel`.
enum class Choice { Ok, Cancel, No };

/// The operator's message boxes. An empty title means the program's own name.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual Choice show(const std::string& text, const std::string& title, Buttons buttons) = 0;
};

}  // namespace kelvane
