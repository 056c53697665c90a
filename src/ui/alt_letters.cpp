#include "ui/alt_letters.h"

#include "base/utf8.h"

namespace kelvane {

namespace {

bool inRange(char32_t character, char32_t first, char32_t last) {
  return character >= first && character <= last;
}

/// Capital and small letters that follow each other, the capital one first.
bool isPaired(char32_t c) {
  if (inRange(c, 0x139, 0x148) || inRange(c, 0x179, 0x17E)) return c % 2 == 1;
  return c % 2 == 0 && (inRange(c, 0x100, 0x177) || inRange(c, 0x460, 0x481) ||
                        inRange(c, 0x48A, 0x4BF) || inRange(c, 0x4D0, 0x52F));
}

bool isLetter(char32_t c) {
  if (c < 0x80) return inRange(c | 0x20, 'a', 'z');
  const bool sign = c == 0xD7 || c == 0xF7 || inRange(c, 0x2000, 0x2BFF) ||
                    inRange(c, 0x3000, 0x303F) || inRange(c, 0xD800, 0xF8FF) || c >= 0xFE00;
  return c >= 0xC0 && !sign;
}

bool isFree(const std::u32string& taken, char32_t character) {
  return taken.find(lowerCase(character)) == std::u32string::npos;
}

std::size_t placeToMark(const std::u32string& name, const std::u32string& taken) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (isLetter(name[i]) && isFree(taken, name[i])) return i;
  }
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (inRange(name[i], '0', '9') && isFree(taken, name[i])) return i;
  }
  return name.size();
}

}  // namespace

char32_t lowerCase(char32_t c) {
  if (inRange(c, 'A', 'Z') || (inRange(c, 0xC0, 0xDE) && c != 0xD7)) return c + 0x20;
  if (inRange(c, 0x391, 0x3AB) || inRange(c, 0x410, 0x42F)) return c + 0x20;
  if (inRange(c, 0x388, 0x38A)) return c + 0x25;
  if (inRange(c, 0x400, 0x40F)) return c + 0x50;
  switch (c) {
    case 0x178:
      return 0xFF;
    case 0x386:
      return 0x3AC;
    case 0x38C:
      return 0x3CC;
    case 0x38E:
    case 0x38F:
      return c + 0x3F;
    default:
      return isPaired(c) ? c + 1 : c;
  }
}

char32_t markedLetter(std::string_view caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] == '&' && caption[++i] != '&')
      return lowerCase(characters(caption.substr(i))[0]);
  }
  return 0;
}

std::vector<std::string> markedCaptions(std::span<const std::string> names, std::u32string taken) {
  std::vector<std::string> captions;
  for (const std::string& text : names) {
    const std::u32string name = characters(text);
    const std::size_t marked = placeToMark(name, taken);
    std::string& caption = captions.emplace_back();
    for (std::size_t i = 0; i < name.size(); ++i) {
      if (i == marked || name[i] == '&') caption += '&';
      appendCharacter(caption, name[i]);
    }
    if (marked < name.size()) taken += lowerCase(name[marked]);
  }
  return captions;
}

}  // namespace kelvane
