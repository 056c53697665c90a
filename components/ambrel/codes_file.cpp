#include "components/ambrel/codes_file.h"

#include "base/safe_file.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kLargestCodes = 4u << 20;

}  // namespace

std::shared_ptr<const Codes> loadCodes(const DataFiles& files, std::vector<std::string>& notes) {
  for (const auto& file : files.named("codes.txt")) {
    std::string reason;
    const auto text = readFile(file, kLargestCodes, &reason);
    std::vector<std::string> problems;
    if (!text) problems.push_back(reason);
    auto codes = text ? std::make_shared<const Codes>(*text, problems) : nullptr;
    if (!problems.empty()) notes.push_back("Codes " + pathText(file) + ": " + problems.front());
    if (codes) return codes;
  }
  return std::make_shared<const Codes>();
}

}  // namespace kelvane::ambrel
