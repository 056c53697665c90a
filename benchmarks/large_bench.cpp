#include <algorithm>
#include <ctime>
#include <functional>
#include <string>

#include "base/number.h"
#include "base/program_line.h"
#include "base/text.h"
#include "benchmarks/table.h"
#include "companions/channel_file.h"
#include "components/ambrel/bands/band_plan.h"
#include "components/ambrel/schedule/codes.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/schedule/season.h"
#include "components/ambrel/stations/known_sets.h"
#include "components/ambrel/stations/station_table.h"
#include "components/sondrel/channels/channel_bank.h"
#include "components/sondrel/config/receiver_config.h"
#include "components/sondrel/radios/radio_models.h"
#include "components/sondrel/rigctld/rigctld_description.h"
#include "panel/command_line.h"
#include "station_log/log_table.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

// Files of the largest size and the worst form that is read: what twice as large a file takes, and
// whether the window could answer within a second of the start.

namespace {

using namespace kelvane;

/// Gives the system back what the library keeps of memory that was freed. A program that starts has
/// none at hand; of a larger text the library would keep less, and it would seem slow beside half.
void startWithoutMemory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

/// The quickest of some runs, of the processor's time: it waits for nothing but other programs.
double milliseconds(const std::function<void()>& work) {
  double best = 1e9;
  for (int run = 0; run < 3; ++run) {
    startWithoutMemory();
    const std::clock_t start = std::clock();
    work();
    best = std::min(best, 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best;
}

/// `make` answers the text of a size; `read` reads it.
void compare(const std::string& name, std::size_t size,
             const std::function<std::string(std::size_t)>& make,
             const std::function<void(const std::string&)>& read) {
  const std::string whole = make(size), half = make(size / 2);
  const double of = milliseconds([&] { read(whole); });
  const double ofHalf = milliseconds([&] { read(half); });
  bench::print({name, of, "ms", "twice the time of half the file", 2 * ofHalf, 1.3});
  bench::print({name, of, "ms", "the most it should be", 1000, 1});
}

std::string sections(std::size_t count) {
  std::string text = "Version=1\n";
  for (std::size_t i = 0; i < count; ++i)
    text += "[Receiver]\nName=Attic\nMemories=Attic\n#" + std::string(1000, '-') + "\n";
  return text;
}

std::string sets(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text += "[Set " + std::to_string(i) + "]\n" + std::to_string(100 + i % 29'000) + " ; Name\n";
  return text;
}

/// `bytes` of lines that end with CR alone.
std::string carriages(std::size_t bytes) {
  std::string text;
  text.reserve(bytes);
  const std::string line = "  14074000|USB  |  2700|Slow |2026-11-22|01:00:00|Amateur|CQ|Attic|\r";
  while (text.size() + line.size() <= bytes) text += line;
  return text;
}

std::string channels(std::size_t count) {
  std::string text = "# channels\n";
  for (std::size_t i = 0; i < count; ++i)
    text += std::to_string(i) + "; 14074000; 0; USB; 2700; 1; 0\n";
  return text;
}

std::string broadcasts(std::size_t count) {
  std::string text =
      "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135\n";
  for (std::size_t i = 0; i < count; ++i)
    text += std::to_string(3000 + i % 20'000) + ";0000-2400;" + std::to_string(1 + i % 7) +
            ";D;Name;E;Eu;a;1;" + twoDigits(static_cast<int>(1 + i % 28)) + "01;2802\n";
  return text;
}

std::string bandPlan(std::size_t count) {
  const auto at = [](std::size_t i) { return std::to_string(9000 + 400 * i); };
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text += "A band ; " + at(i) + " ; " + at(i + 1) + " ; 1000 ; AM ; 6000\n";
  return text;
}

std::string codes(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text += "site ; G-" + std::to_string(i) + " ; Some place\n";
  return text;
}

std::string description(std::size_t count) {
  std::string text = "1\n2031\n0\n";
  for (std::size_t i = 0; i < count; ++i)
    text += std::to_string(1000 * i + 1) + ".0 " + std::to_string(1000 * i + 900) +
            ".0 0x1ff -1 -1 0x1 0x1\n";
  return text + "0 0 0 0 0 0 0\n";
}

std::string models(std::size_t count) {
  std::string text =
      " Rig #  Mfg                    Model                   Version         Status\n";
  for (std::size_t i = 1; i <= count; ++i) {
    const std::string number = std::to_string(i);
    text += std::string(6 - number.size(), ' ') + number +
            "  Hamlib                 Dummy                   20240709.0      Stable\n";
  }
  return text;
}

std::string exchanged(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += "001;   14074000;    0;  USB; 2700;Slow;0;\r\n";
  return text;
}

/// What else is read, each of which has to take twice the time for twice the size.
void compareSmallParsers() {
  compare("band plan of 50,000 entries", 50'000, bandPlan, [](const std::string& text) {
    bench::must(ambrel::readBandPlan(text).plan.has_value(), "the plan is read");
  });
  compare("100,000 codes", 100'000, codes, [](const std::string& text) {
    const ambrel::Codes all(text);
    bench::must(all.problems().empty(), "all codes are read");
  });
  compare("radio of 20,000 ranges", 20'000, description, [](const std::string& text) {
    std::vector<std::string> lines;
    for (const std::string_view line : split(text, '\n')) lines.emplace_back(line);
    sondrel::readDescription(lines);
  });
  compare("list of 50,000 radio models", 50'000, models, [](const std::string& text) {
    bench::must(sondrel::readModels(text).has_value(), "the models are read");
  });
  compare("100,000 exchanged channels", 100'000, exchanged, [](const std::string& text) {
    const auto isLine = [](std::string_view line) { return readChannelLine(line, 1).ok(); };
    LineCutter cutter(isLine);
    bench::must(cutter.feed(text), "all lines are read");
    cutter.end();
  });
  compare(
      "command line of 8 MB", 8'000'000, [](std::size_t size) { return std::string(size, '-'); },
      [](const std::string& text) {
        bench::must(!parseCommandLine(text).instance.empty(), "it is an instance's name");
        programOf(text);
      });
}

}  // namespace

int main() {
  return bench::measure([] {
    compareSmallParsers();
    compare("receivers.txt of 1 MB, 1,000 sections of one name", 1000, sections,
            [](const std::string& text) {
              bench::must(sondrel::readConfig(text)->receivers.size() == 8, "eight are read");
            });
    compare("known list of 60,000 sets", 60'000, sets, [](const std::string& text) {
      std::vector<ambrel::StationList> lists;
      lists.push_back(ambrel::readKnownSets(text, "own"));
      bench::must(lists.front().problems.count == 0, "all lines are read");
      const ambrel::StationTable table(std::move(lists));
    });
    compare("log of 256 MB, lines ended by CR alone", 256'000'000, carriages,
            [](const std::string& text) {
              LogRejects rejects;
              const LogTable log(text, rejects);
              bench::must(log.size() > 1000 && rejects.count == 0, "all records are read");
            });
    compare("file of 80,000 channels", 80'000, channels, [](const std::string& text) {
      bench::must(sondrel::ChannelBank::read(text)->unread() == 0, "all channels are read");
    });
    compare("schedule of 400,000 lines", 400'000, broadcasts, [](const std::string& text) {
      const auto reading = ambrel::readEibiSchedule(text, ambrel::Season{});
      bench::must(reading.problems.count < 2, "all lines are read");
    });
  });
}
