#include "diagnostics/report.h"

#include <algorithm>
#include <array>
#include <set>
#include <system_error>

#include "base/barrier.h"
#include "base/folder.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "contract/link_state.h"
#include "receiver/receiver_set.h"
#include "settings/options.h"
#include "settings/title.h"

namespace kelvane {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kLargestConfiguration = 4 << 20;

constexpr auto kHarmless = std::to_array<std::string_view>(
    {"version",      "name",        "kind",        "memories",    "type",       "minimum",
     "maximum",      "fineststep",  "largeststep", "step",        "frequency",  "modes",
     "mode",         "filters",     "bfo",         "agc",         "blanker",    "attenuator",
     "hffilter",     "lines",       "channels",    "channelskip", "squelch",    "remote",
     "linktime",     "answertime",  "channeltime", "fault",       "faultheals", "refuse",
     "untold",       "channelread", "port",        "model",       "pollrate",   "lineshare",
     "smeteroffset", "bfolimit",    "preamp",      "share",       "shareport",  "sharehold"});

std::string section(std::string_view heading, const std::string& content) {
  return std::string(kLineEnd) + std::string(heading) + std::string(kLineEnd) + content;
}

std::string row(std::string_view content) {
  return "  " + std::string(content) + std::string(kLineEnd);
}

std::string lineWithoutSecrets(std::string_view line) {
  const std::size_t sign = line.find('=');
  if (line.starts_with('[')) return row(line);
  if (sign == std::string_view::npos) return row("(a line of another kind, left out)");
  const std::string_view key = trimmed(line.substr(0, sign));
  const bool harmless = std::ranges::find(kHarmless, lower(key)) != kHarmless.end();
  return row(harmless ? line : std::string(key) + "=(left out)");
}

}  // namespace

std::string withoutSecrets(std::string_view configuration) {
  std::string shown;
  while (!configuration.empty()) {
    const std::size_t end = std::min(configuration.find('\n'), configuration.size() - 1);
    const std::string_view line = trimmed(configuration.substr(0, end + 1));
    configuration.remove_prefix(end + 1);
    if (!line.empty() && !line.starts_with('#')) shown += lineWithoutSecrets(line);
  }
  return shown;
}

std::string DiagnosticReport::states() const {
  std::string text;
  const Count count = receiverCount(receivers_);
  for (Index rx = 0; rx < count; ++rx) {
    const Long code = receivers_.GetRxLinkState(rx);
    const bool up = code == static_cast<Long>(LinkState::Up);
    text += row(std::to_string(rx + 1) + ": " + receivers_.GetRxName(rx).value() + ": " +
                std::to_string(code) + " " + std::string(up ? "up" : linkFaultWords(code)));
    text += programs(rx);
  }
  return text;
}

std::string DiagnosticReport::programs(Index rx) const {
  const Text state = receivers_.GetRxShareState(rx);
  if (state.empty()) return {};
  std::string text = row("   " + state);
  const Count count = receivers_.GetRxProgramCount(rx);
  for (Long i = 0; i < count; ++i) text += row("   " + receivers_.GetRxProgram(rx, i).value());
  const Text last = receivers_.GetRxMovedBy(rx);
  return last.empty() ? text : text + row("   moved last by " + last);
}

std::string DiagnosticReport::options() const {
  const Options options = loadOptions(settings_);
  std::string text;
  for (const OptionRow& option : kOptionRows)
    text += row(std::string(option.setting) + "=" + (options.*option.member ? "yes" : "no"));
  return text + row("Colours=" + std::string(coloursName(options.OptColours)));
}

std::string DiagnosticReport::configuration() const {
  const FileReading reading = FileSteps().read(folder_ / "receivers.txt", kLargestConfiguration);
  if (reading.how == FileReading::Whole) return withoutSecrets(reading.content);
  const bool missing = reading.how == FileReading::Missing;
  return row(missing ? "There is none." : "It cannot be read: " + reading.reason);
}

std::string DiagnosticReport::events() const {
  std::string text;
  std::array<char, 160> line;
  for (std::size_t i = 0; i < history_.size(); ++i) text += row(writeEvent(history_.at(i), line));
  return text.empty() ? row("None since the start.") : text;
}

/// Each part of the program notes its own.
std::string DiagnosticReport::faults() const {
  std::string noted = notedFaults() + receivers_.GetRxFaults().value();
  if (frequencies_) noted += frequencies_->GetFrqFaults().value();
  std::string text;
  for (const std::string_view line : split(noted, '\n')) {
    if (!line.empty()) text += row(line);
  }
  return text.empty() ? row("None since the start.") : text;
}

std::string DiagnosticReport::text(const SystemFacts& facts, WallTime now) const {
  std::array<char, 160> made;
  const std::string time(writeEvent({now, "", 0, 0}, made).substr(0, 23));
  std::string files;
  for (const std::string& file : facts.files) files += row(file);
  return programTitle() + std::string(kLineEnd) + "Report of " + time + " UTC" +
         std::string(kLineEnd) + section("System", row(facts.system)) + section("Files", files) +
         section("Receivers and their links now", states()) + section("Options", options()) +
         section("Configuration of the receivers, without addresses and commands",
                 configuration()) +
         section("Faults that were met, after which the program went on", faults()) +
         section("Events of the links, the oldest first", events());
}

std::string DiagnosticReport::save(const SystemFacts& facts, WallTime now) const {
  const std::filesystem::path file = folder_ / "report.txt";
  const Result<> saved = writeFileSafely(file, text(facts, now));
  if (!saved) return "The report could not be saved: " + saved.reason();
  return "The report has been saved as\r\n" + pathText(file) +
         "\r\n\r\nIt holds versions, options, the receivers without addresses and commands, and "
         "the last events of their links. Please read it before you send it to anybody.";
}

void pruneCrashReports(const std::filesystem::path& folder, std::size_t keep) {
  std::error_code error;
  // The names begin with the time, so that their order is that of their age.
  std::set<std::filesystem::path> stems;
  for (const std::filesystem::path& entry : entriesIn(folder)) {
    const std::filesystem::path name = entry.filename();
    if (pathText(name).starts_with("crash-")) stems.insert(name.stem());
  }
  for (; stems.size() > keep; stems.erase(stems.begin())) {
    for (const char* kind : {".dmp", ".txt", ".part"}) {
      std::filesystem::path file = folder / *stems.begin();
      std::filesystem::remove(file += kind, error);
    }
  }
}

}  // namespace kelvane
