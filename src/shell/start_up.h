#pragma once

#include <memory>
#include <string>
#include <vector>

#include "shell/command_line.h"
#include "shell/main_window.h"
#include "ui/message_boxes.h"

namespace kelvane {

/// Where the two components come from. Null where a component is not available, for whatever
/// reason.
class ComponentSource {
 public:
  virtual ~ComponentSource() = default;
  virtual std::unique_ptr<ReceiverComponent> receiver() = 0;
  virtual std::unique_ptr<FrequencyComponent> frequency() = 0;
};

/// The program from its command line to a panel that can be shown.
class StartUp {
 public:
  StartUp(ComponentSource& components, MessageBoxes& boxes)
      : components_(components), boxes_(boxes) {}

  /// Opens both components for the instance. False when one is missing or no receiver is
  /// configured; the operator has then been told in words.
  bool openComponents(const std::string& instance, std::int32_t ownerWindow);

  ReceiverComponent& receiver() { return *receiver_; }
  FrequencyComponent& frequency() { return *frequency_; }

 private:
  bool openReceiver(const std::string& instance, std::int32_t ownerWindow);
  bool openFrequency(const std::string& instance, std::int32_t ownerWindow);
  bool refuse(const std::string& text);

  ComponentSource& components_;
  MessageBoxes& boxes_;
  std::unique_ptr<ReceiverComponent> receiver_;
  std::unique_ptr<FrequencyComponent> frequency_;
};

/// Carries out a command line that does not start the panel: shows the usage, or announces and
/// deletes the instance's settings. False for one that does start it.
bool handleWithoutPanel(const CommandLine& line, SettingsStore& settings, MessageBoxes& boxes);

}  // namespace kelvane
