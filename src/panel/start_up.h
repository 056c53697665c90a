#pragma once

#include <memory>
#include <string>
#include <vector>

#include "panel/command_line.h"
#include "panel/main_window.h"
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

/// An instance's one panel, among all processes of the user's session.
class PanelClaim {
 public:
  virtual ~PanelClaim() = default;
  /// Claims the instance for this process, until it ends; false while another has it.
  virtual bool claim() = 0;

  enum class Result {
    Ours,    ///< the instance is claimed for this process
    Shown,   ///< another process has it, and its window is in front now
    Silent,  ///< another process has it and does not answer
  };
  /// As claim(), but what another process shows is brought to the front. One that is just ending is
  /// waited for.
  virtual Result claimOrShow() = 0;
};

/// Carries out a command line that does not start the panel: shows the usage, announces and deletes
/// the instance's settings unless its panel runs, or brings the running panel to the front. False
/// for one that does start it; the instance is claimed then.
bool handleWithoutPanel(const CommandLine& line, SettingsStore& settings, MessageBoxes& boxes,
                        PanelClaim& panel);

}  // namespace kelvane
