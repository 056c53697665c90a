#include "controls/channel_step.h"

#include <string>

namespace kelvane {

namespace {

constexpr Channel kNone = -1;

}  // namespace

std::string channelText(Channel channel, Count count) {
  std::string text = std::to_string(channel);
  const std::size_t width = count >= 101 ? 3 : 2;
  return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

ChannelStep::ChannelStep(MainView& view, ReceiverComponent& component, ShownReceiver& shown)
    : view_(view), component_(component), shown_(shown) {
  view_.LChn.tip = view_.VChn.tip = "Stepping";
  view_.IChn.tip = "Bank step";
  view_.IChn.text = "CH";
  for (Control* label : {&view_.LChn, &view_.VChn, &view_.IChn}) {
    label->back = kBlack;
    label->fore = kQuietText;
  }
}

void ChannelStep::receiverSelected() {
  const bool channels = component_.GetRxChnCount(shown_.index()) != 0;
  view_.IChn.visible = view_.VChn.visible = channels;
  updated(component_.GetRxChannel(shown_.index()));
}

void ChannelStep::updated(Channel channel) {
  view_.VChn.text =
      channel == kNone ? "" : channelText(channel, component_.GetRxChnCount(shown_.index()));
}

void ChannelStep::step(Long direction) {
  const Index rx = shown_.index();
  const Channel last = component_.GetRxChnCount(rx) - 1;
  const Channel first = component_.GetRxChnFirst(rx);
  if (last < first) return;
  const Channel current = component_.GetRxChannel(rx);
  Channel next = current == kNone ? first : current + direction;
  if (next > last) next = first;
  if (next < first) next = last;
  component_.SelectRxChannel(rx, next);
}

}  // namespace kelvane
