#include "station_log/adif_fields.h"

#include <algorithm>

#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"

namespace kelvane {

namespace {

constexpr std::size_t kLongestName = 64;

bool isTagAt(std::string_view text, std::size_t at, std::string_view tag) {
  return equalIgnoringCase(text.substr(at, tag.size()), tag);
}

std::size_t findTag(std::string_view text, std::string_view tag, std::size_t from) {
  for (auto at = text.find('<', from); at != text.npos; at = text.find('<', at + 1))
    if (isTagAt(text, at, tag)) return at;
  return text.npos;
}

std::string asText(std::string_view value) {
  value = trimmed(value);
  return isUtf8(value) ? std::string(value) : utf8FromLatin1(value);
}

}  // namespace

bool AdifRecords::isAdif(std::string_view bytes) {
  const std::string_view start = bytes.substr(0, std::size_t{1} << 16);
  return findTag(start, "<EOH>", 0) != start.npos || findTag(start, "<EOR>", 0) != start.npos;
}

AdifRecords::AdifRecords(std::string_view bytes) : all_(bytes) {
  // A text before the first field is a head, which ends with a tag of its own.
  const auto head = findTag(all_, "<EOH>", 0);
  if (head != all_.npos) at_ = head + 5;
}

std::string_view AdifRecords::field(const char* name) const {
  const auto found = fields_.find(name);
  return found == fields_.end() ? std::string_view() : std::string_view(found->second);
}

/// Takes the field whose "<" is here; false where it is none.
bool AdifRecords::takeField() {
  const auto close = all_.substr(at_, kLongestName).find('>');
  if (close == all_.npos) return false;
  const std::string_view tag = all_.substr(at_ + 1, close - 1);
  const auto colon = tag.find(':');
  if (colon == tag.npos) return false;
  const std::string_view digits = tag.substr(colon + 1, tag.find(':', colon + 1) - colon - 1);
  const auto length = wholeNumber(digits);
  if (!length || *length < 0) return false;
  const std::size_t from = at_ + close + 1;
  std::size_t to = std::min(from + static_cast<std::size_t>(*length), all_.size());
  if (from + static_cast<std::size_t>(*length) > all_.size()) cut_ = true;
  const std::string_view value = all_.substr(from, to - from);
  if (std::ranges::any_of(value, [](char c) { return (c & 0x80) != 0; }))
    to = std::min(std::max(to, all_.find('<', to)), all_.size());
  fields_[upper(trimmed(tag.substr(0, colon)))] = asText(all_.substr(from, to - from));
  at_ = to;
  return true;
}

bool AdifRecords::next() {
  fields_.clear();
  for (;;) {
    const auto tag = all_.find('<', at_);
    if (tag == all_.npos) {
      at_ = all_.size();
      cut_ = cut_ || !fields_.empty();
      return !fields_.empty();
    }
    if (fields_.empty()) {
      lines_ += static_cast<std::size_t>(
          std::count(all_.begin() + static_cast<std::ptrdiff_t>(counted_),
                     all_.begin() + static_cast<std::ptrdiff_t>(tag), '\n'));
      counted_ = tag;
      line_ = lines_;
    }
    at_ = tag;
    if (isTagAt(all_, at_, "<EOR>")) {
      at_ += 5;
      if (!fields_.empty()) return true;
    } else if (!takeField()) {
      ++at_;
    }
  }
}

}  // namespace kelvane
