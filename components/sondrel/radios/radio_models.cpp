#include "components/sondrel/radios/radio_models.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "base/text.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kMostModels = 20'000;
constexpr std::size_t kLongestName = 80;

/// Where the columns of a list begin.
struct ModelColumns {
  std::size_t maker, name, version, status;
};

std::optional<ModelColumns> columnsOf(std::string_view line) {
  const auto maker = line.find("Mfg"), name = line.find("Model"), version = line.find("Version");
  const auto status = line.find("Status");
  const bool all = line.find("Rig #") < maker && maker < name && name < version &&
                   version < status && status != line.npos;
  return all ? std::optional(ModelColumns{maker, name, version, status}) : std::nullopt;
}

/// A column's text. One that is too long for its column goes on to the next blank.
std::string columnText(std::string_view line, std::size_t from, std::size_t to) {
  if (from >= line.size()) return {};
  while (to < line.size() && line[to - 1] != ' ' && line[to] != ' ') ++to;
  return std::string(trimmed(line.substr(from, std::min(to - from, kLongestName))));
}

std::optional<RadioModel> modelOf(std::string_view line, const ModelColumns& at) {
  const auto number = wholeNumber(line.substr(0, std::min(at.maker, line.size())));
  if (!number || *number < 1 || *number > 99'999'999) return std::nullopt;
  RadioModel model{static_cast<std::int32_t>(*number),
                   columnText(line, at.maker, at.name),
                   columnText(line, at.name, at.version),
                   {}};
  const auto status = line.substr(std::min(at.status, line.size()));
  model.status = trimmed(status.substr(0, status.find_first_of(" \t")));
  return model.name.empty() ? std::nullopt : std::optional(std::move(model));
}

/// The text behind a word at the beginning of a line; empty where there is no such line.
std::string_view valueBehind(std::string_view text, std::string_view word) {
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    const std::string_view line = text.substr(from, end - from);
    if (line.starts_with(word)) return trimmed(line.substr(word.size()));
    from = end + 1;
  }
  return {};
}

std::int32_t baud(std::string_view text) {
  const auto digits = text.substr(0, text.find_first_not_of("0123456789"));
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      digits.empty() ? 0 : wholeNumber(digits).value_or(0), 0, 10'000'000));
}

ModelFacts::Connection connectionOf(std::string_view type) {
  if (type == "RS-232") return ModelFacts::Connection::Serial;
  if (type == "Network link" || type == "UDP Network link") return ModelFacts::Connection::Network;
  return type == "None" ? ModelFacts::Connection::None : ModelFacts::Connection::Unknown;
}

/// The usual value of the setting "civaddr"; -1 where the model has none.
int usualCiv(std::string_view settings) {
  const auto from = settings.find("civaddr:");
  if (from == settings.npos) return -1;
  const std::string_view row = settings.substr(from, 200);
  const auto value = row.find("Value:");
  if (value == row.npos) return 0;
  return std::min(baud(trimmed(row.substr(value + 6))), 255);
}

/// Upper case, and nothing but letters and digits: "IC-7300" is found by "ic7300".
std::string soughtLetters(std::string_view text) {
  std::string letters;
  for (const char c : upper(text)) {
    const bool letter = isCapital(c) || isDigit(c) || static_cast<unsigned char>(c) > 127;
    if (letter || c == '+' || c == '#') letters += c;
  }
  return letters;
}

}  // namespace

std::optional<std::vector<RadioModel>> readModels(std::string_view text) {
  std::optional<ModelColumns> columns;
  std::vector<RadioModel> models;
  const std::string valid = validUtf8(text, '?');
  for (const std::string_view line : split(valid, '\n')) {
    if (!columns) {
      columns = columnsOf(line);
    } else if (auto model = modelOf(line, *columns); model && models.size() < kMostModels) {
      models.push_back(std::move(*model));
    }
  }
  if (!columns) return std::nullopt;
  std::ranges::stable_sort(models, [](const RadioModel& a, const RadioModel& b) {
    const std::string first = upper(a.maker), second = upper(b.maker);
    return first != second ? first < second : upper(a.name) < upper(b.name);
  });
  return models;
}

ModelFacts readModelFacts(std::string_view capabilities, std::string_view settings) {
  ModelFacts facts;
  facts.connection = connectionOf(valueBehind(capabilities, "Port type:"));
  const std::string_view line = valueBehind(capabilities, "Serial speed:");
  if (const auto dots = line.find(".."); dots != line.npos) {
    facts.slowest = baud(line);
    facts.fastest = std::max(facts.slowest, baud(line.substr(dots + 2)));
  }
  facts.handshake = line.find("CTS/RTS") != line.npos;
  facts.civ = usualCiv(settings);
  return facts;
}

std::vector<std::int32_t> speedsOf(const ModelFacts& facts) {
  std::vector<std::int32_t> speeds;
  for (const std::int32_t speed : {115'200, 57'600, 38'400, 19'200, 9600, 4800, 2400, 1200, 300}) {
    const bool within = speed >= facts.slowest && speed <= facts.fastest;
    if (facts.fastest == 0 || within) speeds.push_back(speed);
  }
  if (speeds.empty()) speeds.push_back(facts.fastest);
  return speeds;
}

ModelSearch::ModelSearch(const std::vector<RadioModel>& models) : models_(models) {
  letters_.reserve(models.size());
  for (const auto& model : models) letters_.push_back(soughtLetters(model.maker + model.name));
}

std::vector<std::size_t> ModelSearch::find(std::string_view maker, std::string_view typed) const {
  std::vector<std::string> words;
  for (const std::string_view word : split(typed.substr(0, kLongestName), ' ')) {
    if (auto letters = soughtLetters(word); !letters.empty()) words.push_back(std::move(letters));
  }
  std::vector<std::size_t> places;
  for (std::size_t place = 0; place < models_.size(); ++place) {
    const auto held = [&](const std::string& word) {
      return letters_[place].find(word) != std::string::npos;
    };
    if ((maker.empty() || models_[place].maker == maker) && std::ranges::all_of(words, held))
      places.push_back(place);
  }
  return places;
}

std::vector<std::string> ModelSearch::makers() const {
  std::vector<std::string> makers;
  for (const auto& model : models_) {
    if (makers.empty() || makers.back() != model.maker) makers.push_back(model.maker);
  }
  return makers;
}

}  // namespace kelvane::sondrel
