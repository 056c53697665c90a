#pragma once

#include <cctype>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::fakes {

/// What an RTF document shows, as far as our own need it: lines, tabs, and arrows as words,
/// whichever way they are written. A document that is broken off or closes too much reads as
/// nothing.
class RtfText {
 public:
  static std::string of(std::string_view rtf) {
    RtfText reader(rtf);
    while (reader.at_ < rtf.size() && !reader.groups_.empty()) reader.step();
    return reader.groups_.size() == 1 ? reader.text_ : std::string();
  }

 private:
  struct Group {
    bool hidden = false;
    int font = 0;
  };

  explicit RtfText(std::string_view rtf) : rtf_(rtf) {}

  void step() {
    const char c = rtf_[at_++];
    if (c == '{') return groups_.push_back(groups_.back());
    if (c == '}') return groups_.size() > 1 ? groups_.pop_back() : groups_.clear();
    if (c == '\\') return control();
    if (c != '\n' && c != '\r') put(std::string(1, c));
  }

  void control() {
    if (rtf_[at_] == '\'') {
      const int code = std::stoi(std::string(rtf_.substr(at_ + 1, 2)), nullptr, 16);
      at_ += 3;
      return put(arrow(groups_.back().font == 1 ? code : 0));
    }
    const auto word = take([](char c) { return std::isalpha(static_cast<unsigned char>(c)); });
    const auto number =
        take([](char c) { return c == '-' || std::isdigit(static_cast<unsigned char>(c)); });
    if (at_ < rtf_.size() && rtf_[at_] == ' ') ++at_;
    meaning(word, number.empty() ? 0 : std::stoi(number));
  }

  void meaning(const std::string& word, int number) {
    if (word == "par") return put("\n");
    if (word == "tab") return put("\t");
    if (word == "f") groups_.back().font = number;
    if (word == "fonttbl" || word == "stylesheet") groups_.back().hidden = true;
    if (word == "u") {
      put(arrow(number));
      ++at_;  // what stands there for readers that know no such characters
    }
  }

  template <class Wanted>
  std::string take(Wanted wanted) {
    const std::size_t start = at_;
    while (at_ < rtf_.size() && wanted(rtf_[at_])) ++at_;
    return std::string(rtf_.substr(start, at_ - start));
  }

  static std::string arrow(int code) {
    static const std::map<int, std::string> arrows{{0xAC, "Left"},  {0xAD, "Up"},   {0xAE, "Right"},
                                                   {0xAF, "Down"},  {8592, "Left"}, {8593, "Up"},
                                                   {8594, "Right"}, {8595, "Down"}};
    const auto found = arrows.find(code);
    return found == arrows.end() ? "?" : found->second;
  }

  void put(const std::string& text) {
    if (!groups_.empty() && !groups_.back().hidden) text_ += text;
  }

  std::string_view rtf_;
  std::size_t at_ = 0;
  std::vector<Group> groups_{{}};
  std::string text_;
};

}  // namespace kelvane::fakes
