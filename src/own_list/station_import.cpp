#include "own_list/station_import.h"

#include <utility>

#include "base/barrier.h"
#include "base/unchanging_file.h"
#include "components/ambrel/lists/entry_texts.h"

namespace kelvane {

namespace fs = std::filesystem;

namespace {

constexpr const char* kActs[] = {"Add", "Change", "Leave out"};

}  // namespace

StationImport::StationImport(fs::path file, std::shared_ptr<FileSteps> disk, lists::Entries own)
    : file_(std::move(file)),
      disk_(std::move(disk)),
      own_(std::make_shared<const lists::Entries>(std::move(own))) {
  start(true, true);
}

StationImport::~StationImport() {
  if (work_.valid()) work_.wait();
}

std::vector<GridColumn> StationImport::columns() {
  const auto shown = [](const char* caption, int width, bool right = false) {
    return GridColumn{caption, width, right, false, false, true, {}};
  };
  return {shown("Line", 50, true), shown("What", 66), shown("kHz", 76, true),
          shown("Name", 180),      shown("Mode", 56), shown("Width", 52, true),
          shown("Group", 96),      shown("UTC", 76),  shown("Why", 288)};
}

void StationImport::start(bool read, bool understand) {
  if (work_.valid()) work_.wait();
  const auto job = [file = file_, disk = disk_, own = own_, bytes = bytes_, reading = reading_,
                    rule = rule_, shape = shape_, delimiter = delimiter_, read,
                    understand]() -> Result {
    Result result{{}, bytes, reading, {}};
    try {
      if (read) {
        FileReading now = readUnchanging(file, formats::kLargestList, *disk);
        if (now.how != FileReading::Whole) {
          result.refusal = now.reason.empty() ? "There is no such file." : now.reason;
          return result;
        }
        result.bytes = std::make_shared<const std::string>(std::move(now.content));
      }
      if (understand) {
        const bool guess = shape.fields.empty();
        result.reading = std::make_shared<const formats::Reading>(
            guess && delimiter == 0
                ? formats::readList(*result.bytes)
                : formats::readTable(
                      *result.bytes,
                      guess ? formats::guessedShape(*result.bytes, delimiter) : shape));
      }
      result.refusal = result.reading->refusal;
      result.plan = formats::planImport(*result.reading, *own, rule);
    } catch (...) {
      result.refusal = "It cannot be read: " + thrownWords() + ".";
    }
    return result;
  };
  work_ = std::async(std::launch::async, job);
}

bool StationImport::tick() {
  if (!work_.valid() || work_.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
    return false;
  Result result = work_.get();
  bytes_ = std::move(result.bytes);
  reading_ = std::move(result.reading);
  plan_ = std::move(result.plan);
  refusal_ = std::move(result.refusal);
  return true;
}

void StationImport::rule(formats::Rule rule) {
  if (rule == rule_) return;
  rule_ = rule;
  start(false, false);
}

void StationImport::shape(const formats::TableShape& shape) {
  if (!bytes_ || shape == reading_->shape) return;
  shape_ = shape;
  start(false, true);
}

void StationImport::delimiter(char delimiter) {
  if (!bytes_) return;
  delimiter_ = delimiter;
  shape_ = {};
  start(false, true);
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
