#include "own_list/station_import.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/barrier.h"
#include "base/unchanging_file.h"
#include "components/ambrel/lists/entry_texts.h"

namespace kelvane {

namespace fs = std::filesystem;

namespace {

constexpr const char* kActs[] = {"Add", "Change", "Leave out"};

}  // namespace

StationImport::StationImport(fs::path file, std::shared_ptr<FileSteps> disk, lists::Entries own,
                             std::function<void()> wake)
    : file_(std::move(file)),
      disk_(std::move(disk)),
      own_(std::make_shared<const lists::Entries>(std::move(own))),
      work_(std::move(wake)) {
  start(From::File);
}

std::vector<GridColumn> StationImport::columns() {
  const auto shown = [](const char* caption, int width, bool right = false) {
    return GridColumn{caption, width, right, false, false, true, {}};
  };
  return {shown("Line", 50, true), shown("What", 66), shown("kHz", 76, true),
          shown("Name", 180),      shown("Mode", 56), shown("Width", 52, true),
          shown("Group", 96),      shown("UTC", 76),  shown("Why", 288)};
}

void StationImport::start(From from) {
  if (busy()) {
    queued_ = std::min(queued_.value_or(from), from);
    return;
  }
  work_.start(
      "understanding a list",
      [this, file = file_, disk = disk_, own = own_, known = Found{{}, bytes_, reading_, {}},
       rule = rule_, shape = shape_, delimiter = delimiter_, dropped = dropped_,
       from]() -> WorkBeside::Done {
        const auto found = std::make_shared<Found>(known);
        if (from == From::File) {
          FileReading now = readUnchanging(file, formats::kLargestList, *disk);
          if (now.how != FileReading::Whole) {
            found->refusal = now.reason.empty() ? "There is no such file." : now.reason;
            return [this, found] { take(std::move(*found)); };
          }
          found->bytes = std::make_shared<const std::string>(std::move(now.content));
        }
        if (*dropped) return {};
        if (from != From::Reading) {
          const bool guess = shape.fields.empty();
          found->reading = std::make_shared<const formats::Reading>(
              guess && delimiter == 0
                  ? formats::readList(*found->bytes)
                  : formats::readTable(
                        *found->bytes,
                        guess ? formats::guessedShape(*found->bytes, delimiter) : shape));
        }
        if (*dropped) return {};
        found->refusal = found->reading->refusal;
        found->plan = formats::planImport(*found->reading, *own, rule);
        return [this, found] { take(std::move(*found)); };
      },
      [this](const std::string& why) {
        take({"It cannot be read: " + why + ".", bytes_, reading_, {}});
      });
}

void StationImport::take(Found found) {
  bytes_ = std::move(found.bytes);
  reading_ = std::move(found.reading);
  plan_ = std::move(found.plan);
  refusal_ = std::move(found.refusal);
  if (queued_) start(*std::exchange(queued_, std::nullopt));
}

void StationImport::setRule(formats::Rule rule) {
  if (rule == rule_) return;
  rule_ = rule;
  start(From::Reading);
}

void StationImport::setShape(const formats::TableShape& shape) {
  if (!bytes_ || shape == reading_->shape) return;
  shape_ = shape;
  start(From::Bytes);
}

void StationImport::setDelimiter(char delimiter) {
  if (!bytes_) return;
  delimiter_ = delimiter;
  shape_ = {};
  start(From::Bytes);
}

std::string StationImport::words() const {
  if (busy()) return "Reading...";
  if (!refusal_.empty()) return "Nothing can be taken in. " + refusal_;
  return std::string(formats::nameOf(reading_->format).name) + ": " +
         std::to_string(reading_->taken.size()) + " stations understood. " + plan_.words();
}

std::string StationImport::cell(GridRow row, int column) const {
  if (row >= plan_.rows.size()) return {};
  const formats::PlanRow& planned = plan_.rows[row];
  if (column == 0) return std::to_string(planned.place);
  if (column == 1) return kActs[static_cast<std::size_t>(planned.act)];
  if (column == 8) return planned.why;
  if (!planned.entry) return {};
  const lists::Entry& entry = *planned.entry;
  switch (column) {
    case 2:
      return lists::khzText(entry.frequency);
    case 3:
      return entry.name;
    case 4:
      return lists::modeText(entry.mode);
    case 5:
      return entry.width > 0 ? std::to_string(entry.width) : std::string();
    case 6:
      return entry.group;
    default:
      return lists::timesText(entry);
  }
}

}  // namespace kelvane
