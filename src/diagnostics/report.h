#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/components.h"
#include "diagnostics/link_history.h"
#include "settings/settings.h"

namespace kelvane {

/// What the computer says of itself and of the program's files.
struct SystemFacts {
  std::string system;              ///< Windows' version, and how wide the program is
  std::vector<std::string> files;  ///< each file of the program with its version
};

/// A receiver configuration as it may be shown to others: keys that a kind of receiver is known to
/// have and that hold no secret keep their values; of all others, of command lines and of addresses
/// above all, only the name is left. Comments are left out.
std::string withoutSecrets(std::string_view configuration);

/// What a listener who asks for help sends along: a text for people.
class DiagnosticReport {
 public:
  /// `folder` is the instance's own, in which its configuration lies and the report is saved.
  /// `frequencies` is asked for the faults it met; it may be null.
  DiagnosticReport(ReceiverComponent& receivers, const SettingsStore& settings,
                   const LinkHistory& history, std::filesystem::path folder,
                   FrequencyComponent* frequencies = nullptr)
      : receivers_(receivers),
        frequencies_(frequencies),
        settings_(settings),
        history_(history),
        folder_(std::move(folder)) {}

  std::string text(const SystemFacts& facts, WallTime now) const;
  /// Saves the text as `report.txt`; answers for the operator where it is, or why it is not.
  std::string save(const SystemFacts& facts, WallTime now) const;

 private:
  std::string states() const;
  /// Who shares the receiver; nothing where nobody may.
  std::string programs(Index rx) const;
  std::string options() const;
  std::string configuration() const;
  std::string events() const;
  std::string faults() const;

  ReceiverComponent& receivers_;
  FrequencyComponent* frequencies_;
  const SettingsStore& settings_;
  const LinkHistory& history_;
  std::filesystem::path folder_;
};

/// Deletes the oldest crash reports, so that at most `keep` of them stay. A folder that is not
/// there has none.
void pruneCrashReports(const std::filesystem::path& folder, std::size_t keep);

}  // namespace kelvane
