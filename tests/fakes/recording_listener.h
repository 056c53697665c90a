#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "contract/components.h"

namespace kelvane::fakes {

/// Writes down every event of the receiver component, each as one line: "RxFrqUpdated 0 7050000 0".
class RecordingListener : public ReceiverListener {
 public:
  struct Heard {
    std::string name;
    std::string line;
    bool global = false;
  };

  /// The component whose GetRxGlobalFlag is written down with each event.
  explicit RecordingListener(ReceiverComponent* component = nullptr) : component_(component) {}

#define EVENT(name, params, args) \
  void name params override { record(#name, joined args); }
#include "contract/sondrel_events.inc"
#undef EVENT

  std::vector<Heard> heard;
  /// Run in the handler of each event, after it was written down.
  std::function<void(const Heard&)> meanwhile;

  void clear() { heard.clear(); }
  /// Lines of all events but the S-meter's, or of those with that name.
  std::vector<std::string> lines(std::string_view name = {}) const {
    std::vector<std::string> result;
    for (const Heard& h : heard) {
      if (name.empty() ? h.name != "RxSMtUpdated" : h.name == name) result.push_back(h.line);
    }
    return result;
  }
  std::size_t count(std::string_view name) const { return lines(name).size(); }

 private:
  template <class... Values>
  static std::string joined(const Values&... values) {
    std::ostringstream text;
    ((text << " " << values), ...);
    return text.str();
  }

  void record(const char* name, const std::string& values) {
    heard.push_back({name, name + values, component_ && component_->GetRxGlobalFlag()});
    if (meanwhile) meanwhile(Heard(heard.back()));
  }

  ReceiverComponent* component_;
};

}  // namespace kelvane::fakes
