#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "ui/file_flows.h"

namespace kelvane::fakes {

/// File dialogs and message boxes that answer by a script and remember what they were asked. When
/// the script ends, everything is cancelled.
class ScriptedDialogs : public FileDialogs, public MessageBoxes {
 public:
  std::optional<std::string> open(const FileRequest& request) override {
    opened.push_back(request);
    return next();
  }
  std::optional<std::string> save(const FileRequest& request) override {
    saved.push_back(request);
    return next();
  }
  Choice show(const std::string& text, const std::string& title, Buttons buttons) override {
    constexpr const char* kNames[] = {"|Ok", "|OkCancel", "|SaveOrNot"};
    boxes.push_back(title + "|" + text + kNames[static_cast<int>(buttons)]);
    return choice;
  }

  std::deque<std::optional<std::string>> script;
  Choice choice = Choice::Cancel;
  std::vector<FileRequest> opened;
  std::vector<FileRequest> saved;
  std::vector<std::string> boxes;

 private:
  std::optional<std::string> next() {
    if (script.empty()) return std::nullopt;
    auto answer = script.front();
    script.pop_front();
    return answer;
  }
};

}  // namespace kelvane::fakes
