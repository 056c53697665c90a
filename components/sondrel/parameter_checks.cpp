#include "components/sondrel/parameter_checks.h"

#include <algorithm>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

const Parameter* parameterOf(const ReceiverKind& kind, std::string_view key) {
  const auto same = [key](const Parameter& p) { return equalIgnoringCase(p.key, key); };
  const auto found = std::ranges::find_if(kind.parameters, same);
  return found == kind.parameters.end() ? nullptr : &*found;
}

}  // namespace

Result<> checkYesNo(std::string_view text) {
  const bool fine = equalIgnoringCase(text, "yes") || equalIgnoringCase(text, "no");
  if (fine) return {};
  return Failure{"must be yes or no"};
}

Result<> checkParameter(const ReceiverKind& kind, std::string_view key, std::string_view text) {
  const Parameter* parameter = parameterOf(kind, key);
  if (!parameter || !parameter->check || text.empty()) return {};
  return parameter->check(text);
}

ParameterReader::ParameterReader(const ReceiverKind& kind, const ReceiverEntry& entry,
                                 std::vector<std::string>& notes)
    : kind_(kind), entry_(entry), notes_(notes) {}

std::string_view ParameterReader::text(std::string_view key) const {
  const Parameter* parameter = parameterOf(kind_, key);
  const std::string_view text = entry_.setting(key);
  if (text.empty()) return parameter ? parameter->standard : std::string_view();
  const Result<> checked = checkParameter(kind_, key, text);
  if (checked) return text;
  constexpr std::size_t kShown = 60;
  notes_.push_back(entry_.name + ": " + std::string(key) + "=" +
                   std::string(text.substr(0, kShown)) + " is not used: it " + checked.reason() +
                   ". " +
                   (parameter->standard.empty() ? "Nothing" : std::string(parameter->standard)) +
                   " is used instead.");
  return parameter->standard;
}

std::int32_t ParameterReader::whole(std::string_view key) const {
  return static_cast<std::int32_t>(wholeNumber(text(key)).value_or(0));
}

bool ParameterReader::yes(std::string_view key) const {
  return equalIgnoringCase(text(key), "yes");
}

}  // namespace kelvane::sondrel
