// Feeds each target with its true samples, with what once broke it, and with both a little damaged.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "tests/fuzz/fuzz_target.h"

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The same damage at each run: a byte changed, a piece cut out, a piece doubled.
std::string damaged(std::string text, std::mt19937& random) {
  if (text.empty()) return text;
  const auto place = [&] { return random() % text.size(); };
  text[place()] = static_cast<char>(random());
  const std::size_t from = place(), length = random() % 40;
  const std::string piece = text.substr(from, length);
  if (random() % 2 == 0) text.erase(from, length);
  return text.insert(text.empty() ? 0 : place(), piece);
}

}  // namespace

int main(int count, char** words) {
  const fs::path folder = count > 1 ? words[1] : ".";
  constexpr int kDamages = 50;
  int files = 0;
  for (const auto& [name, target] : kelvane::fuzz::targets()) {
    target({});
    for (const char* kind : {"seeds", "broke"}) {
      std::error_code none;
      for (const auto& entry : fs::directory_iterator(folder / kind / name, none)) {
        ++files;
        const std::string content = contentOf(entry.path());
        std::fprintf(stderr, "%s: %s\n", name.c_str(), entry.path().filename().c_str());
        target(content);
        std::mt19937 random(1);
        for (int i = 0; i < kDamages; ++i) target(damaged(content, random));
      }
    }
  }
  std::printf("%zu targets, %d files.\n", kelvane::fuzz::targets().size(), files);
  // A folder that is not found would pass for one without faults.
  return files > 0 ? 0 : 1;
}
