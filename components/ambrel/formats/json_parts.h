#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "components/ambrel/formats/format_parts.h"

namespace kelvane::formats {

using Json = nlohmann::json;

/// Reads a JSON text. Where it is none, or nested deeper than `kDeepest`, the reading gets the
/// refusal, which names the line, and the answer is discarded.
Json readJson(const std::string& text, Reading& reading);

/// The text in a member of an object; empty where it has none.
std::string textOf(const Json& object, const char* member);
/// The number in a member; `otherwise` where it has none.
double numberOf(const Json& object, const char* member, double otherwise);
/// The frequency in Hz that a number says.
Result<Hz> frequencyOf(const Json& number, double unit);

}  // namespace kelvane::formats
