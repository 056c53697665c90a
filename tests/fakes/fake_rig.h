#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::fakes {

/// A radio and the server before it: answers command lines in the manner of one kind of server.
class FakeRig {
 public:
  enum class Manner {
    Rigctld,     ///< labelled replies, a whole description
    RigctldVfo,  ///< the same, wants a VFO's name in each command
    Headless,    ///< labelled replies without the command's name; what it lacks it answers by 0
    StaticSdr,   ///< plain replies, a fixed description, a meter and a squelch in dBFS
    SilentSdr,   ///< plain replies, a fixed description, no levels; "CHKVFO 0"
    SmallSdr,    ///< frequency and mode on one line; every error written twice
  };

  explicit FakeRig(Manner manner) : manner_(manner) {}

  std::int64_t frequency = 7'100'000;
  std::string mode = "USB";
  std::int32_t width = 2400;
  std::map<std::string, double> levels = {{"STRENGTH", -20}, {"ATT", 0}, {"AGC", 2},  {"PREAMP", 0},
                                          {"CWPITCH", 600},  {"IF", 0},  {"SQL", -60}};
  std::int32_t blanker = 0;
  std::int32_t squelch = 1;
  bool powered = true;
  std::int32_t raster = 1;            ///< the radio rounds frequencies to it
  std::optional<int> trouble;         ///< every question to the radio fails with this error
  std::map<std::string, int> errors;  ///< errors by the command's first words ("l AGC")
  std::vector<std::string> heard;     ///< every line, in order
  std::vector<std::string> sets;      ///< those of them that change the radio, without prefix

  /// The reply to one line (without its line end).
  std::string answer(const std::string& line) {
    heard.push_back(line);
    if (line == "\\chk_vfo") return checkVfo();
    if (line == "\\dump_state") return describe();
    const bool extended = rigctld() && line.starts_with("+");
    auto words = split(extended ? line.substr(1) : line);
    if (words.empty()) return {};
    if (manner_ == Manner::RigctldVfo && words.size() > 1 && words[1] == "currVFO") {
      words.erase(words.begin() + 1);
    }
    const auto [report, values] = perform(words);
    if (extended && headless()) return withoutHeading(words, report, values);
    return extended ? labelled(words, report, values) : bare(words, report, values);
  }

  static std::vector<std::string> split(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
  }

 private:
  using Values = std::vector<std::pair<std::string, std::string>>;
  struct Performed {
    int report = 0;
    Values values;
  };

  bool rigctld() const {
    return manner_ == Manner::Rigctld || manner_ == Manner::RigctldVfo || headless();
  }
  bool headless() const { return manner_ == Manner::Headless; }

  std::string checkVfo() const {
    if (manner_ == Manner::RigctldVfo) return "1\n";
    if (manner_ == Manner::SilentSdr) return "CHKVFO 0\n";
    return manner_ == Manner::SmallSdr ? "RPRT 4\nRPRT 4\n" : "0\n";
  }

  std::string describe() const {
    if (manner_ == Manner::SmallSdr) return "RPRT 4\nRPRT 4\n";
    const std::string ranges =
        "100000.000000 30000000.000000 0x1ff -1 -1 0x1 0x1\n"
        "50000000.000000 54000000.000000 0x1ff -1 -1 0x1 0x1\n0 0 0 0 0 0 0\n0 0 0 0 0 0 0\n";
    const std::string lists =
        "0x1ff 10\n0x1ff 1000\n0 0\n0xc 2400\n0xc 1800\n0xc 3000\n0xc 0\n0x2 500\n0x2 250\n"
        "0x1 6000\n0x20 15000\n0 0\n9990\n9990\n1200\n0\n";
    if (!rigctld()) {
      return "0\n2\n2\n150000.000000 1500000000.000000 0x1ff -1 -1 0x1 0xf\n0 0 0 0 0 0 0\n"
             "0 0 0 0 0 0 0\n" +
             lists + "0\n0\n0xff\n0xff\n0xff\n0xff\n0xff\n0xff\n";
    }
    return "1\n2031\n0\n" + ranges + lists +
           "10 20 \n6 12 18 \n0x2\n0x2\n0x40020863\n0x20863\n"
           "0x0\n0x0\nvfo_ops=0x0\ntimeout=0\nrig_model=2031\nrigctld_version=Fake 1\n"
           "agc_levels=0=OFF 1=FAST 2=MEDIUM 3=SLOW\ndone\n";
  }

  Performed perform(const std::vector<std::string>& words) {
    const auto& command = words[0];
    const auto argument = words.size() > 1 ? words[1] : std::string();
    for (const auto& [start, error] : errors) {
      if ((command + " " + argument).starts_with(start)) return {error, {}};
    }
    if (command == "\\dump_caps") {
      return {
          0,
          {{"", "Caps dump for model: 2031"}, {"", "Model name:\tR-1"}, {"", "Mfg name:\tAcme"}}};
    }
    if (command == "M" && argument == "?") return {0, {{"", "AM CW USB LSB RTTY FM CWR "}}};
    if (trouble) return {*trouble, {}};
    if (!powered) return {0, {}};
    if (command == "f") return {0, {{"Frequency", std::to_string(frequency)}}};
    if (command == "m") return {0, {{"Mode", mode}, {"Passband", std::to_string(width)}}};
    if (command == "l") return getLevel(argument);
    if (command == "u") return {0, {{"", std::to_string(blanker)}}};
    if (command == "n") return {0, {{"Tuning Step", "1000"}}};
    if (command == "\\get_dcd") return {0, {{"DCD", std::to_string(squelch)}}};
    return set(words);
  }

  Performed getLevel(const std::string& name) const {
    const bool small = manner_ == Manner::SilentSdr || manner_ == Manner::SmallSdr;
    const bool meter = name == "STRENGTH" || name == "SQL";
    if (small || (manner_ == Manner::StaticSdr && !meter)) return {1, {}};
    const auto level = levels.find(name);
    if (level == levels.end()) return {11, {}};
    std::ostringstream text;
    text << level->second;
    return {0, {{"", text.str()}}};
  }

  static bool isNumber(const std::string& word) {
    return !word.empty() && word.find_first_not_of("0123456789.-") == word.npos;
  }

  Performed set(const std::vector<std::string>& words) {
    // What it lacks it refuses, and what a garbled greeting made of a command it does not
    // understand.
    const bool changes = std::string("FMLUP").find(words[0]) != std::string::npos;
    if (!changes || words.size() < 2 || !isNumber(words.back())) return {1, {}};
    std::string line;
    for (const auto& word : words) line += (line.empty() ? "" : " ") + word;
    sets.push_back(line);
    if (words[0] == "F") {
      const auto wanted = std::stoll(words[1]);
      frequency = (wanted + raster / 2) / raster * raster;
    } else if (words[0] == "M" && words.size() > 2) {
      mode = words[1];
      const auto wanted = std::stoi(words[2]);
      if (wanted > 0) width = wanted;
      if (wanted == 0 && rigctld()) width = mode == "AM" ? 6000 : mode == "CW" ? 500 : 2400;
    } else if (words[0] == "L" && words.size() > 2) {
      levels[words[1]] = std::stod(words[2]);
    } else if (words[0] == "U" && words.size() > 2) {
      blanker = std::stoi(words[2]);
    } else {
      return {1, {}};
    }
    return {0, {}};
  }

  static std::string longName(const std::string& command) {
    static const std::map<std::string, std::string> names = {
        {"f", "get_freq"},  {"F", "set_freq"},  {"m", "get_mode"}, {"M", "set_mode"},
        {"l", "get_level"}, {"L", "set_level"}, {"u", "get_func"}, {"U", "set_func"},
        {"n", "get_ts"},    {"p", "get_parm"},  {"P", "set_parm"}};
    const auto found = names.find(command);
    return found == names.end() ? command.substr(1) : found->second;
  }

  static std::string labelled(const std::vector<std::string>& words, int report,
                              const Values& values) {
    std::string text = longName(words[0]) + ":";
    for (std::size_t i = 1; i < words.size(); ++i) text += " " + words[i];
    text += "\n";
    for (const auto& [label, value] : values) {
      text += (label.empty() ? "" : label + ": ") + value + "\n";
    }
    return text + "RPRT " + std::to_string(-report) + "\n";
  }

  static std::string withoutHeading(const std::vector<std::string>& words, int report,
                                    const Values& values) {
    std::string text;
    if (words.size() > 1) text = words[0] + ": " + words[1] + "\n";
    for (const auto& [label, value] : values) {
      if (words[0] != "M") text += (label.empty() ? "Value" : "TX " + label) + ": " + value + "\n";
    }
    return text + (report == 11 ? "RPRT 0\n" : "RPRT " + std::to_string(-report) + "\n");
  }

  std::string bare(const std::vector<std::string>& words, int report, const Values& values) const {
    if (report != 0 || values.empty()) {
      const auto line = "RPRT " + std::to_string(report) + "\n";
      return manner_ == Manner::SmallSdr && report != 0 ? line + line : line;
    }
    if (manner_ == Manner::SmallSdr && words[0] == "m") {
      return values[0].second + " " + values[1].second + "\n";
    }
    std::string text;
    for (const auto& [label, value] : values) text += value + "\n";
    return text;
  }

  Manner manner_;
};

}  // namespace kelvane::fakes
