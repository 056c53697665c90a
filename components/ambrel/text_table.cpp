#include "components/ambrel/text_table.h"

#include "base/encoding.h"
#include "base/text.h"

namespace kelvane::ambrel {

namespace {

std::vector<std::string> fieldsOf(std::string_view line) {
  std::vector<std::string> fields;
  for (const std::string_view field : split(line, ';')) fields.emplace_back(trimmed(field));
  return fields;
}

}  // namespace

Result<> checkText(std::string_view bytes) {
  if (trimmed(bytes).empty()) return Failure{"the file is empty"};
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    return Failure{"the file is UTF-16; save it as UTF-8"};
  if (bytes.find('\0') != std::string_view::npos) return Failure{"the file is no text"};
  return {};
}

Result<std::vector<TableRow>> readTable(std::string_view text) {
  if (const Result<> checked = checkText(text); !checked) return checked.failure();
  if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  const std::string utf8 = isUtf8(text) ? std::string(text) : utf8FromLatin1(text);
  std::vector<TableRow> rows;
  int number = 0;
  for (const std::string_view line : split(utf8, '\n')) {
    ++number;
    const std::string_view content = trimmed(line);
    if (content.empty() || content.front() == '#') continue;
    rows.push_back({number, fieldsOf(content)});
  }
  return rows;
}

}  // namespace kelvane::ambrel
