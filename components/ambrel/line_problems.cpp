#include "components/ambrel/line_problems.h"

#include <utility>

namespace kelvane::ambrel {

void LineProblems::add(std::size_t line, std::string reason) {
  ++count;
  if (first.size() < kTold) first.push_back({line, std::move(reason)});
}

void LineProblems::append(std::size_t lines, const LineProblems& more) {
  count += more.count;
  for (const LineProblem& problem : more.first) {
    if (first.size() < kTold) first.push_back({lines + problem.line, problem.reason});
  }
}

std::string LineProblems::text() const {
  if (count == 0) return {};
  std::string text = std::to_string(count);
  text += count == 1 ? " line could not be read." : " lines could not be read.";
  for (const LineProblem& problem : first)
    text += " Line " + std::to_string(problem.line) + ": " + problem.reason + ".";
  if (count > first.size()) text += " And so on.";
  return text;
}

}  // namespace kelvane::ambrel
