#include "panel/receiver_tabs.h"

#include <algorithm>
#include <string>
#include <vector>

#include "ui/alt_letters.h"
#include "ui/control_ids.h"
#include "ui/main_controls.h"

namespace kelvane {

namespace {

/// The letters that the panel's own buttons mark. The captions of the receiver's settings are words
/// of the receiver's, and mark nothing.
std::u32string lettersOfButtons(MainView& view) {
  std::u32string letters;
  for (const ControlRow& row : mainControls()) {
    if (!marksLetters(row)) continue;
    for (int i = 0; i < row.count; ++i) letters += markedLetter(row.of(view, i).text);
  }
  return letters;
}

}  // namespace

void ReceiverTabs::build() {
  makeTabs();
  if (hasTabs())
    showOther(0);
  else
    showNone();
}

void ReceiverTabs::receiversChanged(const ReceiverMoves& moves) {
  const Index former = shown_.index();
  const Index now = moves(former);
  requests_.receiversChanged(moves);
  makeTabs();
  if (!hasTabs()) return showNone();
  const auto last = static_cast<Index>(view_.TabStrip.tabs.size() - 1);
  if (now == -1) return showOther(std::min(former, last));
  shown_.show(now);
  select(now);
}

void ReceiverTabs::makeTabs() {
  const Count receivers = receiverCount(component_);
  std::vector<std::string> names;
  for (Index rx = 0; rx < receivers; ++rx) names.push_back(component_.GetRxName(rx));
  view_.TabStrip.tabs.clear();
  for (const std::string& caption : markedCaptions(names, lettersOfButtons(view_)))
    view_.TabStrip.tabs.push_back({caption, "Select receiver", false});
  highlightAll();
  forwarding_.receivers(receivers);
}

void ReceiverTabs::showOther(Index rx) {
  refresh_.otherReceiver();
  shown_.show(rx);
  select(rx);
}

void ReceiverTabs::showNone() {
  view_.TabStrip.selected = -1;
  shown_.showNone();
  refresh_.none();
}

void ReceiverTabs::select(Index rx) {
  if (rx != shown_.index()) refresh_.otherReceiver();
  shown_.show(rx);
  view_.TabStrip.selected = rx;
  component_.SetRxShown(rx);
  refresh_.run();
}

void ReceiverTabs::click(int tab) {
  if (tab < 0 || tab >= static_cast<int>(view_.TabStrip.tabs.size())) return;
  requests_.chosen();
  window_.focus(id::FrqFocus);
  select(static_cast<Index>(tab));
}

void ReceiverTabs::next() {
  const auto tabs = static_cast<int>(view_.TabStrip.tabs.size());
  if (tabs > 0) click((view_.TabStrip.selected + 1) % tabs);
}

bool ReceiverTabs::accelerator(char32_t character) {
  const auto& tabs = view_.TabStrip.tabs;
  const auto found = std::ranges::find(tabs, lowerCase(character),
                                       [](const Tab& tab) { return markedLetter(tab.caption); });
  if (found == tabs.end()) return false;
  click(static_cast<int>(found - tabs.begin()));
  return true;
}

void ReceiverTabs::linkReported(Index rx, bool up, Instant now) {
  if (!up) return requests_.linkDown(rx, now);
  if (rx == shown_.index()) return requests_.shownLinkUp(rx, now);
  requests_.linkUp(rx, options_.OptShowNew && hasTabs(), now);
  serveRequest(now);
}

void ReceiverTabs::tunedByHand(Index rx, Instant now) {
  requests_.tunedByHand(rx, now);
  serveRequest(now);
}

void ReceiverTabs::serveRequest(Instant now) {
  const auto rx = requests_.due(window_.modalOpen() || entry_.busy(), now);
  if (!rx || *rx < 0 || *rx >= static_cast<Index>(view_.TabStrip.tabs.size())) return;
  if (*rx != shown_.index()) select(*rx);
}

void ReceiverTabs::highlight(Index rx, bool remote) {
  if (rx >= 0 && rx < static_cast<Index>(view_.TabStrip.tabs.size()))
    view_.TabStrip.tabs[rx].highlighted = remote;
}

void ReceiverTabs::highlightAll() {
  for (Index rx = 0; rx < static_cast<Index>(view_.TabStrip.tabs.size()); ++rx)
    highlight(rx, component_.GetRxRemote(rx));
}

}  // namespace kelvane
