#include "tests/fakes/writing_process.h"

#include <thread>

#include "base/number.h"
#include "components/sondrel/channels/channel_bank.h"
#include "tests/fakes/log_rig.h"

namespace kelvane::fakes {

namespace {

namespace fs = std::filesystem;

constexpr Channel kChannels = 10;
constexpr const char* kSettings[] = {"MainLeft", "MainTop"};
const std::string kSchedule =
    "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135;P:35;Start:60;"
    "Stop:60;\r\n6000;0000-2400;;D;Somebody;G;Eu;a;1;2703;2910;\r\n";

using Tell = std::function<void(const std::string& line)>;

/// One process of an instance: panel's log and both components, on a hand-driven clock.
class WritingProcess {
 public:
  WritingProcess(const fs::path& folder, int which, SettingsStore* settings, Tell tell)
      : folder_(folder), which_(which), settings_(settings), tell_(std::move(tell)) {
    core_.OpenRxConfig("Kelvane", 0);
    pass(milliseconds(3000));
    lists_.OpenFrqConfig("Kelvane");
    lists_.InitFrqPlan(0);
  }

  /// Writes something of each kind in turn, for ever.
  [[noreturn]] void write(int from) {
    for (int turn = 0;; ++turn) {
      const int number = from + 2 * turn + which_;
      storeChannel(number);
      storeRecord(number);
      storeSetting(number);
      if (turn % 3 == 1) renameReceiver(number);
      if (turn % 3 == 2) keepLists();
      if (turn % 4 == 3) saveLog();
    }
  }
  DataLog& log() { return log_; }
  /// Lets the log finish with its file.
  void settle() {
    for (; log_.busy(); std::this_thread::yield()) log_.deliver();
  }

 private:
  void pass(milliseconds time) {
    for (int i = 0; i < 10; ++i) {
      clock_.advance(time / 10);
      core_.tick(clock_.now);
      core_.deliverEvents();
    }
  }
  /// What is told is on the disk.
  void tell(const std::string& what, int number) const {
    tell_(what + " " + std::to_string(number) + "\n");
  }

  void storeChannel(int number) {
    const Channel channel = number % kChannels;
    core_.SetRxChannel(0, channel, number, 0, 0, 6000, 0, 0);
    if (core_.FinishRxWriting(0, "").value().empty())
      tell("channel" + std::to_string(channel), number);
  }
  /// Each process has one of its own, as only one panel of an instance writes them.
  void storeSetting(int number) {
    const std::string name = kSettings[which_];
    if (settings_ && settings_->writeNumber(name, number)) tell(name, number);
  }
  void renameReceiver(int number) {
    sondrel::DriversModel model = core_.drivers();
    model.rename(static_cast<std::size_t>(which_), "R" + std::to_string(number));
    if (core_.applyDrivers(model)) tell("receiver" + std::to_string(which_), number);
    pass(milliseconds(500));
  }
  void storeRecord(int number) {
    core_.SetRxFrequency(0, false, number);
    pass(milliseconds(200));
    log_.Receiver(0);
    log_.UpdateOnly(false);
    log_.activate();
    settle();
    if (log_.view().Notice.empty()) tell("log", number);
  }
  void saveLog() {
    log_.OK_Click();
    settle();
  }
  void keepLists() {
    lists_.NextFrqRegion();
    lists_.importSchedule(folder_ / "sked-a22.csv");
    lists_.FinishFrqWriting();
    lists_.deliverEvents();
  }

  fs::path folder_;
  int which_;
  SettingsStore* settings_;
  Tell tell_;
  HandClock clock_;
  FakeSondrelWindows windows_;
  sondrel::SondrelCore core_{folder_, [this] { return clock_.now; }, [] {}, windows_};
  FakeAmbrelWindows listWindows_;
  ambrel::AmbrelCore lists_{KELVANE_DATA_FOLDER, folder_,
                            [] { return std::chrono::system_clock::time_point(); }, [] {},
                            listWindows_};
  FakeClipboard clipboard_;
  ScriptedDialogs dialogs_;
  FileFlows flows_{dialogs_, dialogs_};
  FixedCalendar calendar_;
  DataLog log_{DataLogServices{core_, clipboard_, flows_, calendar_, folder_}};
};

std::string contentOf(const fs::path& file) { return readFile(file, 1 << 28).value_or(""); }

}  // namespace

void writeUntilKilled(const fs::path& folder, int which, int from, SettingsStore* settings,
                      const Tell& tell) {
  WritingProcess(folder, which, settings, tell).write(from);
}

WrittenFiles::WrittenFiles(std::filesystem::path folder) : folder_(std::move(folder)) {
  writeFileSafely(folder_ / "Kelvane" / "receivers.txt",
                  "Version=1\r\n[Receiver 1]\r\nName=A\r\nChannels=0-9\r\nMemories=A\r\n"
                  "[Receiver 2]\r\nName=B\r\nMemories=B\r\n");
  writeFileSafely(folder_ / "sked-a22.csv", kSchedule);
}

void WrittenFiles::note(const std::string& lines) {
  for (std::size_t from = 0, to; (to = lines.find('\n', from)) != lines.npos; from = to + 1)
    noteLine(lines.substr(from, to - from));
}

void WrittenFiles::noteLine(const std::string& line) {
  const std::size_t blank = line.find(' ');
  const int number = std::stoi(line.substr(blank + 1));
  if (line.starts_with("log "))
    ++logged_[number];
  else
    newest_[line.substr(0, blank)] = number;
  ++written_;
}

WrittenFiles::Found WrittenFiles::look(const SettingsStore* settings) const {
  Found found;
  for (const auto& entry : fs::recursive_directory_iterator(folder_))
    found.torn += pathText(entry.path()).find(".damaged") != std::string::npos ? 1 : 0;
  lookAtChannels(found);
  lookAtReceivers(found);
  lookAtLog(found);
  lookAtLists(found);
  if (settings) lookAtSettings(*settings, found);
  return found;
}

void WrittenFiles::lookAtChannels(Found& found) const {
  const fs::path file = folder_ / "Kelvane" / "Memories" / "A.txt";
  // Where all were killed before they had written a channel, there is no file yet.
  const auto bank = fs::exists(file) ? sondrel::ChannelBank::read(contentOf(file))
                                     : std::optional(sondrel::ChannelBank());
  found.torn += !bank || bank->unread() > 0 ? 1 : 0;
  for (Channel channel = 0; bank && channel < kChannels; ++channel) {
    const auto known = newest_.find("channel" + std::to_string(channel));
    if (known != newest_.end() && bank->at(channel).frequency < known->second) ++found.lost;
  }
}

void WrittenFiles::lookAtReceivers(Found& found) const {
  const auto config = sondrel::readConfig(contentOf(folder_ / "Kelvane" / "receivers.txt"));
  if (!config || config->receivers.size() != 2 || !config->notes.empty()) {
    ++found.torn;
    return;
  }
  for (std::size_t i = 0; i < 2; ++i) {
    const auto known = newest_.find("receiver" + std::to_string(i));
    if (known == newest_.end()) continue;
    if (wholeNumber(config->receivers[i].name.substr(1)).value_or(0) < known->second) ++found.lost;
  }
}

/// As the next start has it, with what was left in journals.
void WrittenFiles::lookAtLog(Found& found) const {
  WritingProcess next(folder_, 0, nullptr, {});
  next.settle();
  next.log().UpdateOnly(true);
  next.log().activate();
  next.settle();
  const GridTable& table = next.log().PadGrd().table();
  std::map<int, int> there;
  for (GridRow row = 0; row < table.rows(); ++row) ++there[std::stoi(table.cell(row, 0))];
  for (const auto& [number, times] : there) found.torn += times > 1 ? 1 : 0;
  for (const auto& [number, times] : logged_) found.lost += there.contains(number) ? 0 : 1;
}

void WrittenFiles::lookAtLists(Found& found) const {
  FakeAmbrelWindows windows;
  ambrel::AmbrelCore lists(
      KELVANE_DATA_FOLDER, folder_, [] { return std::chrono::system_clock::time_point(); }, [] {},
      windows);
  lists.OpenFrqConfig("Kelvane");
  found.torn += lists.notes().empty() ? 0 : 1;
  const std::string region = contentOf(folder_ / "Kelvane" / "region.txt");
  found.torn += region.empty() || region.find_first_of("123") == 0 ? 0 : 1;
}

/// What the other process wrote later has its own name.
void WrittenFiles::lookAtSettings(const SettingsStore& settings, Found& found) const {
  for (const char* name : kSettings) {
    const auto known = newest_.find(name);
    if (known != newest_.end() && settings.number(name, 0) < known->second) ++found.lost;
  }
}

}  // namespace kelvane::fakes
