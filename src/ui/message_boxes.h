#pragma once

#include <string>

namespace kelvane {

enum class Buttons { Ok, OkCancel };
enum class Choice { Ok, Cancel };

/// The operator's message boxes. An empty title means the program's own name.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual Choice show(const std::string& text, const std::string& title, Buttons buttons) = 0;
};

}  // namespace kelvane
