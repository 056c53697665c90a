#include "shell/receiver_tabs.h"

#include <algorithm>

#include "ui/control_ids.h"

namespace kelvane {

namespace {

/// The first character of a UTF-8 text, letters of ASCII in lower case; 0 for an empty text.
char32_t firstCharacter(const std::string& text) {
  if (text.empty()) return 0;
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return static_cast<char32_t>(lead >= 'A' && lead <= 'Z' ? lead + 32 : lead);
  const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  char32_t character = lead & (0x3F >> more);
  for (int i = 1; i <= more && i < static_cast<int>(text.size()); ++i)
    character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
  return character;
}

}  // namespace

void ReceiverTabs::build() {
  makeTabs();
  hasTabs() ? showOther(0) : showNone();
}

void ReceiverTabs::receiversChanged(const ReceiverMoves& moves) {
  const Index former = shown_.index();
  const Index now = moves(former);
  if (waiting_) waiting_ = moves(*waiting_);
  makeTabs();
  if (!hasTabs()) return showNone();
  const auto last = static_cast<Index>(view_.TabStrip.tabs.size() - 1);
  if (now == -1) return showOther(std::min(former, last));
  shown_.show(now);
  select(now);
}

void ReceiverTabs::makeTabs() {
  const Count receivers = receiverCount(component_);
  view_.TabStrip.tabs.clear();
  for (Index rx = 0; rx < receivers; ++rx) {
    view_.TabStrip.tabs.push_back(
        {"&" + component_.GetRxName(rx).value(), "Select receiver", component_.GetRxRemote(rx)});
  }
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
  waiting_.reset();
  window_.focus(id::FrqFocus);
  select(static_cast<Index>(tab));
}

void ReceiverTabs::next() {
  const auto tabs = static_cast<int>(view_.TabStrip.tabs.size());
  if (tabs > 0) click((view_.TabStrip.selected + 1) % tabs);
}

bool ReceiverTabs::accelerator(char32_t character) {
  if (character >= 'A' && character <= 'Z') character += 32;
  const auto tabs = static_cast<int>(view_.TabStrip.tabs.size());
  for (int step = 1; step <= tabs; ++step) {
    const int tab = (view_.TabStrip.selected + step) % tabs;
    if (firstCharacter(component_.GetRxName(static_cast<Index>(tab)).value()) != character)
      continue;
    click(tab);
    return true;
  }
  return false;
}

void ReceiverTabs::requestShow(Index rx) {
  waiting_ = rx;
  serveRequest();
}

void ReceiverTabs::serveRequest() {
  if (!waiting_ || window_.modalOpen() || entry_.busy()) return;
  const Index rx = *waiting_;
  waiting_.reset();
  if (rx < 0 || rx >= static_cast<Index>(view_.TabStrip.tabs.size())) return;
  if (rx != shown_.index()) select(rx);
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
