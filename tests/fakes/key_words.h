#pragma once

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane::fakes {

/// Presses keys as the operator reads them: "SHF Left", "CTRALT+", "nnC", "MMMKKK.HHH CR".
class KeyWords {
 public:
  /// Takes the code of a key and the modifiers that are held.
  using Press = std::function<void(int, int)>;
  using Type = std::function<void(const std::string&)>;

  explicit KeyWords(PanelRig& rig)
      : press_([&rig](int code, int shift) { rig.press(code, shift); }),
        type_([&rig](const std::string& characters) { rig.type(characters); }) {}
  /// Where characters are keys too.
  explicit KeyWords(Press press)
      : press_(std::move(press)), type_([this](const std::string& characters) {
          for (const char character : characters) press_(character, 0);
        }) {}
  KeyWords(const KeyWords&) = delete;
  KeyWords& operator=(const KeyWords&) = delete;

  void press(std::string keys) {
    replace(keys, "MMMKKK.HHH", "7100.5");
    replace(keys, "HHHHHHH", "2500");
    replace(keys, "HHHH", "700");
    replace(keys, "nn", "12");
    // The card draws Page Up and Page Down as two arrows.
    replace(keys, "Up Up", "PageUp");
    replace(keys, "Down Down", "PageDown");
    std::istringstream words(keys);
    int held = 0;
    for (std::string word; words >> word;) pressWord(word, held);
  }

 private:
  void pressWord(const std::string& word, int& held) {
    static const std::map<std::string, int, std::less<>> modifiers{
        {"SHF", 1}, {"CTL", 2}, {"CTR", 2}, {"ALT", 4}, {"CTRALT", 6}, {"CTLSHF", 3}};
    static const std::map<std::string, int, std::less<>> codes{{"Left", key::Left},
                                                               {"Right", key::Right},
                                                               {"Up", key::Up},
                                                               {"Down", key::Down},
                                                               {"PageDown", key::PageDown},
                                                               {"HOME", key::Home},
                                                               {"PageUp", key::PageUp},
                                                               {"F1", key::F1},
                                                               {"F6", key::F6}};
    static const std::map<std::string, std::string, std::less<>> characters{
        {"TAB", "\t"}, {"ESC", "\x1b"},   {"SPACE", " "},
        {"CR", "\r"},  {"CTL-C", "\x03"}, {"CTL-V", "\x16"}};
    const std::string sign = word.substr(word.size() - 1);
    if (const auto held_now = modifiers.find(word); held_now != modifiers.end()) {
      held = held_now->second;
    } else if (const auto code = codes.find(word); code != codes.end()) {
      press_(code->second, held);
    } else if (const auto named = characters.find(word); named != characters.end()) {
      type_(named->second);
    } else if (const auto with = modifiers.find(word.substr(0, word.size() - 1));
               with != modifiers.end()) {
      press_(sign == "+" ? key::PadPlus : key::PadMinus, with->second);
    } else {
      type_(word);
    }
  }

  static void replace(std::string& text, std::string_view from, std::string_view to) {
    if (const auto at = text.find(from); at != std::string::npos) text.replace(at, from.size(), to);
  }

  Press press_;
  Type type_;
};

}  // namespace kelvane::fakes
