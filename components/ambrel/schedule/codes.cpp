#include "components/ambrel/schedule/codes.h"

#include <algorithm>

#include "base/text.h"
#include "components/ambrel/text_table.h"

namespace kelvane::ambrel {

namespace {

constexpr std::array<std::string_view, 4> kKinds = {"language", "country", "area", "site"};

}  // namespace

Codes::Codes(std::string_view text) {
  const auto rows = readTable(text);
  if (!rows) {
    problems_.push_back(rows.reason());
    return;
  }
  for (const TableRow& row : *rows) {
    const auto kind = std::find(kKinds.begin(), kKinds.end(), row.fields.front());
    if (row.fields.size() != 3 || kind == kKinds.end()) {
      problems_.push_back("Line " + std::to_string(row.line) + " is no \"kind ; code ; words\"");
      continue;
    }
    words_[static_cast<std::size_t>(kind - kKinds.begin())][row.fields[1]] = row.fields[2];
  }
}

std::string Codes::languages(std::string_view codes) const {
  if (find(Kind::Language, codes)) return wordsOr(Kind::Language, codes);
  std::string text;
  for (const std::string_view code : split(codes, ','))
    text += (text.empty() ? "" : ", ") + wordsOr(Kind::Language, trimmed(code));
  return text;
}

std::string Codes::country(std::string_view code) const { return wordsOr(Kind::Country, code); }

std::string Codes::target(std::string_view code) const {
  if (const std::string* area = find(Kind::Area, code)) return *area;
  return wordsOr(Kind::Country, code);
}

std::string Codes::site(std::string_view code, std::string_view homeCountry) const {
  std::string_view countryCode = homeCountry;
  if (code.starts_with('/')) {
    code.remove_prefix(1);
    const auto dash = code.find('-');
    countryCode = code.substr(0, dash);
    code = dash == std::string_view::npos ? std::string_view() : code.substr(dash + 1);
  }
  const std::string where = country(countryCode);
  if (code.empty()) return where;
  const std::string* name = find(Kind::Site, std::string(countryCode) + "-" + std::string(code));
  return (name ? *name : "site " + std::string(code)) + ", " + where;
}

const std::string* Codes::find(Kind kind, std::string_view code) const {
  const auto& words = words_[static_cast<std::size_t>(kind)];
  const auto found = words.find(std::string(code));
  return found == words.end() ? nullptr : &found->second;
}

std::string Codes::wordsOr(Kind kind, std::string_view code) const {
  const std::string* words = find(kind, code);
  return words ? *words : std::string(code);
}

}  // namespace kelvane::ambrel
