#include "companions/channel_tasks.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>

#include "base/barrier.h"
#include "base/code_page.h"
#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"
#include "controls/channel_step.h"

namespace kelvane {

namespace {

using enum ChannelValue;

/// Channels that are sent before the window's messages have their turn.
constexpr int kAtOnce = 10;
/// Bytes of a file that are read before.
constexpr std::size_t kPiece = 1 << 20;

std::string channels(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " channel" : " channels");
}

/// `count` is the receiver's, for the form of the number.
std::string refusedWords(const std::vector<Channel>& refused, Count count) {
  return channels(refused.size()) + ", the first one " + channelText(refused.front(), count);
}

std::string lines(std::int64_t count) {
  return std::to_string(count) + (count == 1 ? " line" : " lines");
}

/// Whether a channel file gives the name back as it is.
bool fitsFile(const std::string& name) {
  return !name.empty() && name.find_first_of(";\r\n") == std::string::npos &&
         trimmed(name) == name && fromCodePage(toCodePage(name)) == name;
}

/// The texts for values in a file: their names, or where a name would not lead back to its value,
/// the number.
class NamesInFile {
 public:
  explicit NamesInFile(SettingNames& names) : names_(names) {}

  const std::string& of(Setting value) {
    const auto known = texts_.find(value);
    return known != texts_.end() ? known->second : texts_[value] = text(value);
  }

 private:
  std::string text(Setting value) {
    const std::string& name = names_.name(value);
    if (name.empty() && names_.available().empty()) return {};
    return fitsFile(name) && names_.value(name) == value ? name : std::to_string(value);
  }

  SettingNames& names_;
  std::map<Setting, std::string> texts_;
};

/// The value that a text in a file stands for: one that the channel keeps where the receiver has
/// none to name, -1 where nothing is known by that name.
Setting valueInFile(SettingNames& names, const std::string& text, Setting kept) {
  if (text.empty()) return kept;
  const Setting value = names.value(text);
  const bool number = std::ranges::all_of(text, [](char c) { return isDigit(c); });
  return value < 0 && number ? nearestLong(num(text)) : value;
}

}  // namespace

std::string channelFile(const ChannelRows& rows, SettingNames& modes, SettingNames& agc) {
  std::string text;
  NamesInFile modeNames(modes), agcNames(agc);
  for (const auto& [channel, row] : rows)
    addChannelLine(text, channel, row, modeNames.of(row.sent(Mode)), agcNames.of(row.sent(Agc)));
  return text;
}

SaveTask::SaveTask(ReceiverComponent& component, ChannelTable& table)
    : component_(component), table_(table) {
  for (Channel channel = table.first(); channel < table.count(); ++channel) {
    if (table.modified(channel)) channels_.push_back(channel);
    if (!table.reported(channel) && !table.working(channel).free()) ++unreported_;
  }
  words_ = "Saving " + channels(channels_.size()) + " ...";
}

bool SaveTask::step() {
  for (int i = 0; i < kAtOnce && done_ < channels_.size(); ++i) {
    const Channel channel = channels_[done_++];
    words_ = "Saving channel " + channelText(channel, table_.count()) + ", " +
             std::to_string(done_) + " of " + std::to_string(channels_.size()) + " ...";
    table_.sending(channel);
    if (send(channel))
      table_.sent(channel);
    else
      refused_.push_back(channel);
  }
  if (done_ < channels_.size()) return true;
  finish();
  return false;
}

bool SaveTask::send(Channel channel) {
  const ChannelRow& row = table_.working(channel);
  return component_.SetRxChannel(table_.receiver(), channel, row.sent(Frequency), row.sent(Bfo),
                                 row.sent(Mode), row.sent(Filter), row.sent(Agc),
                                 row.sent(Skip)) == Outcome::Done;
}

void SaveTask::finish() {
  words_ = channels_.empty() ? "No channel differs from what the receiver reported."
                             : channels(channels_.size() - refused_.size()) + " saved.";
  if (!refused_.empty()) {
    words_ += " The receiver refused " + refusedWords(refused_, table_.count()) + ".";
  }
  if (unreported_ > 0) {
    words_ += " " + channels(static_cast<std::size_t>(unreported_)) +
              " that the receiver has not reported cannot be saved: reload first.";
  }
}

ClearTask::ClearTask(ReceiverComponent& component, const ChannelTable& table, std::string kept)
    : component_(component), table_(table), kept_(std::move(kept)) {}

bool ClearTask::step() {
  const Count count = table_.count();
  for (int i = 0; i < kAtOnce && next_ < count; ++i, ++next_) {
    words_ = "Clearing channel " + channelText(next_, count) + " ...";
    const bool cleared = component_.ClearRxChannel(table_.receiver(), next_) == Outcome::Done;
    if (!cleared && next_ >= table_.first()) refused_.push_back(next_);
  }
  if (next_ < count) return true;
  words_ = refused_.empty() ? "The receiver's channels are cleared. "
                            : "Not all channels are cleared: the receiver refused " +
                                  refusedWords(refused_, count) + ". ";
  words_ += kept_;
  return false;
}

WriteTask::WriteTask(WorkBeside& beside, const std::shared_ptr<FileSteps>& disk,
                     const std::filesystem::path& path, std::string content, std::string done,
                     std::shared_ptr<ReplacedFile> replaced)
    : content_(std::make_shared<const std::string>(std::move(content))),
      done_(std::move(done)),
      result_(std::make_shared<std::optional<Result<>>>()) {
  words_ = "Writing " + pathText(path) + " ...";
  beside.start(
      "writing a channel file",
      [disk, path, replaced = std::move(replaced), content = content_,
       result = result_]() -> WorkBeside::Done {
        return [result, written = writeInPlaceOf(replaced, path, *content, *disk)] {
          *result = written;
        };
      },
      [result = result_](const std::string& why) {
        *result = Failure{"Cannot write a file: " + why};
      });
}

bool WriteTask::step() {
  if (!*result_) return true;
  words_ = **result_ ? done_ : (*result_)->reason() + ".";
  return false;
}

ImportTask::ImportTask(const std::filesystem::path& path, ChannelTable& table)
    : file_(pathText(path.filename())),
      in_(path, std::ios::binary),
      table_(table),
      lines_([this](std::string_view line) { return take(line); }),
      buffer_(kPiece) {
  words_ = "Importing " + file_ + " ...";
  if (!in_) stopped_ = file_ + " cannot be read.";
}

ImportTask::~ImportTask() {
  barrier("keeping imported channels", [this] { table_.edit(rows_); });
}

bool ImportTask::step() {
  const bool first = in_ && in_.tellg() == std::streampos(0);
  in_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  std::string_view piece(buffer_.data(), static_cast<std::size_t>(in_.gcount()));
  if (first && piece.starts_with(kUtf8Mark)) {
    utf8_ = true;
    piece.remove_prefix(kUtf8Mark.size());
  }
  const bool more = lines_.feed(piece) && in_;
  if (more) {
    words_ = "Importing " + file_ + ", line " + std::to_string(line_) + " ...";
    return true;
  }
  if (in_.bad()) stopped_ = file_ + " cannot be read to its end.";
  lines_.end();
  finish();
  return false;
}

std::string ImportTask::decoded(std::string_view bytes) const {
  return utf8_ ? std::string(bytes) : fromCodePage(bytes);
}

bool ImportTask::take(std::string_view text) {
  ++line_;
  const NamesNeeded needed{!table_.modes().available().empty(), !table_.agc().available().empty()};
  const auto line = readChannelLine(text, line_, needed);
  if (line) return store(*line);
  message_ = line.reason();
  return false;
}

bool ImportTask::store(const ChannelLine& line) {
  const double number = line.channel;
  // A number that no channel can have ends the import, as its reading would fail.
  if (number < 0 || number >= 32767.5) {
    stopped_ = "There is no such channel as on line " + std::to_string(line_) + ".";
    return false;
  }
  const auto channel = static_cast<Channel>(nearestLong(number));
  if (!table_.has(channel)) {
    ++skipped_;
    return true;
  }
  const ChannelRow& now = table_.working(channel);
  ChannelRow row;
  row[Frequency] = line.frequency;
  row[Bfo] = line.bfo;
  row[Mode] = valueInFile(table_.modes(), decoded(line.mode), now.sent(Mode));
  row[Filter] = line.filter;
  row[Agc] = valueInFile(table_.agc(), decoded(line.agc), now.sent(Agc));
  row[Skip] = line.skip;
  if (row.sent(Mode) < 0 || row.sent(Agc) < 0) ++unknown_;
  rows_.emplace_back(channel, row);
  return true;
}

void ImportTask::finish() {
  words_ = channels(rows_.size()) + " imported from " + file_ + ".";
  if (skipped_ > 0) words_ += " " + lines(skipped_) + " for channels that the receiver lacks.";
  if (unknown_ > 0) words_ += " " + lines(unknown_) + " with a mode or AGC that it does not know.";
  if (!message_.empty()) words_ += " " + message_ + ".";
  if (!stopped_.empty()) words_ += " " + stopped_;
  table_.edit(rows_);
  rows_.clear();
}

}  // namespace kelvane
