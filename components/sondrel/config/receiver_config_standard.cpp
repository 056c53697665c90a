#include "components/sondrel/config/receiver_config.h"

#include <utility>

namespace kelvane::sondrel {

namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

/// A full HF receiver. Its link is slow, so that it is the last one to come up at a start.
Settings harrow() {
  return {{"Type", "HF 30"},        {"Minimum", "1"},
          {"Maximum", "29999999"},  {"FinestStep", "1"},
          {"Frequency", "6070000"}, {"Mode", "AM"},
          {"Bfo", "-9900 9900"},    {"Agc", "slow medium fast"},
          {"Blanker", "2"},         {"Attenuator", "0 10 20 30"},
          {"HfFilter", "yes"},      {"Lines", "4"},
          {"Channels", "0-99"},     {"ChannelSkip", "yes"},
          {"LinkTime", "1000"}};
}

/// A wide-band scanner: no BFO, no preselector, many channels from 1.
Settings quill() {
  return {{"Minimum", "10000"},
          {"Maximum", "999999999"},
          {"FinestStep", "10"},
          {"Frequency", "14200000"},
          {"Modes", "AM FM USB LSB CW"},
          {"Mode", "USB"},
          {"Bfo", "none"},
          {"Agc", "medium fast"},
          {"Blanker", "0"},
          {"Attenuator", "0 20"},
          {"HfFilter", "no"},
          {"Lines", "2"},
          {"Channels", "1-200"},
          {"ChannelSkip", "yes"}};
}

/// A plain coast receiver: one filter, hardly a setting, no channels.
Settings tern() {
  return {{"Type", "Coast"},        {"Minimum", "1600000"}, {"Maximum", "4200000"},
          {"FinestStep", "100"},    {"LargestStep", "500"}, {"Step", "500"},
          {"Frequency", "2182000"}, {"Modes", "AM USB"},    {"Mode", "USB"},
          {"Filters", "2700"},      {"Bfo", "-500 500"},    {"Agc", "none"},
          {"Blanker", "0"},         {"Attenuator", "none"}, {"HfFilter", "no"},
          {"Lines", "0"},           {"Channels", "none"}};
}

/// A broadcast receiver: steps of a kilohertz, few channels from 1, one line that can only be read.
Settings loom() {
  return {{"Type", "Broadcast"},    {"Minimum", "150000"},      {"Maximum", "26100000"},
          {"FinestStep", "1000"},   {"LargestStep", "10000"},   {"Step", "5000"},
          {"Frequency", "9580000"}, {"Modes", "AM FM SAM DRM"}, {"Mode", "SAM"},
          {"Bfo", "none"},          {"Agc", "slow fast off"},   {"Blanker", "1"},
          {"Attenuator", "none"},   {"HfFilter", "yes"},        {"Lines", "-1"},
          {"Channels", "1-20"},     {"ChannelSkip", "no"}};
}

}  // namespace

ReceiverConfig standardConfig() {
  ReceiverConfig config;
  config.receivers = {{"Harrow", "simulated", "Harrow", harrow()},
                      {"Quill", "simulated", "Quill", quill()},
                      {"Tern", "simulated", "Tern", tern()},
                      {"Loom", "simulated", "Loom", loom()}};
  return config;
}

}  // namespace kelvane::sondrel
