#include "panel/command_line.h"

#include "base/instance_name.h"
#include "base/text.h"

namespace kelvane {

namespace {

constexpr std::string_view kClean = "-clean";

std::string instanceIn(std::string_view text) {
  const std::string_view name = trimmed(text);
  return std::string(name.empty() ? kDefaultInstance : name);
}

}  // namespace

CommandLine parseCommandLine(std::string_view text) {
  if (text.find("-?") != text.npos) return {CommandLine::Action::Usage, {}};
  const auto clean = text.find(kClean);
  if (clean == text.npos) return {CommandLine::Action::Run, instanceIn(text)};
  std::string rest(text);
  rest.replace(clean, kClean.size(), kClean.size(), ' ');
  if (rest.find('-') != rest.npos) return {CommandLine::Action::Usage, {}};
  return {CommandLine::Action::Clean, instanceIn(rest)};
}

std::string usageText() {
  return "Usage:\tKelvane.exe (NAME) (-clean)\r\n"
         "     with\r\n"
         "\tNAME = Instance name\r\n"
         "\t-clean  = Registry clean option";
}

std::string cleaningNotice(std::string_view instance) {
  return "Cleaning " + std::string(instance) + " registry context\r\nPlease restart application";
}

std::string runningNotice(std::string_view instance) {
  return std::string(instance) +
         " is running, so nothing was cleaned. Close its window first, and then clean it.";
}

std::string silentNotice(std::string_view instance) {
  return std::string(instance) +
         " is running already, and does not answer. Close it, or wait for it, and start it again.";
}

}  // namespace kelvane
