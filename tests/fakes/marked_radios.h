#pragma once

#include <array>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "base/time.h"
#include "tests/fakes/bare_receivers.h"

namespace kelvane::fakes {

/// What a made-up radio has, and how it behaves.
struct RadioKind {
  std::string name;
  bool agc = true, attenuator = true, blanker = true, channels = true, hfFilter = true;
  int filters = 3;             ///< of each mode
  int lines = 0;               ///< auxiliary IO, negative where they can only be read
  milliseconds delay{0};       ///< from a request to its event
  bool refuses = false;        ///< takes no request but for a frequency
  bool silent = false;         ///< tells nothing but its frequency
  bool frequencyKnown = true;  ///< false: not before it was tuned once
};

/// One made-up radio. Every value that it tells carries its mark, so that on a panel a value of
/// another radio's is seen at once: frequencies end in the mark, names begin with a letter and it.
class MarkedRadio {
 public:
  MarkedRadio(int mark, RadioKind kind);

  std::string id() const { return "radio-" + std::to_string(mark); }
  /// A name as this radio tells it, for a mode (M), AGC (A), blanker (N) or attenuator (T) value.
  std::string named(char what, Setting value) const;
  Hz marked(Hz value) const { return value - value % 10 + mark; }

  int mark;
  RadioKind kind;
  bool online = true;
  bool remote = true;
  Hz frequency;
  Hz bfo = 0;
  Setting mode, filter, agc, attenuator, blanker;
  Long hfFilter = 0;
  Long squelch = 0;
  Long level = -90;
  Channel channel = -1;
  std::array<Long, 4> lines{};
};

/// A receiver component of up to eight such radios. They may be removed, added and reordered; all
/// that they tell goes through a queue, in which each answer waits as long as its radio is slow.
class MarkedRadios final : public BareReceivers {
 public:
  static constexpr int kRadios = 8;

  explicit MarkedRadios(std::function<Instant()> now);

  /// Delivers what is due.
  void deliver(ReceiverListener& to);
  /// When the next answer is due.
  Instant nextDue() const;
  /// Whether an answer of this radio's is still under way.
  bool answerWaits(int mark) const;
  /// The radios that there are, by their marks, in the order of their indices.
  const std::vector<int>& set() const { return set_; }
  void setRadios(std::vector<int> marks);
  MarkedRadio& radio(int mark) { return radios_[static_cast<std::size_t>(mark)]; }

  /// Something happens at the radio itself: what and how far by any number.
  void happens(int mark, unsigned number);
  /// The radio's link goes or comes up.
  void link(int mark, bool up);

  Answer<Count> OpenRxConfig(Text, Long) override { return GetRxCount(); }
  Answer<Flag> GetRxGlobalFlag() override { return atRadio_; }
  Answer<Count> GetRxCount() override { return static_cast<Count>(set_.size()); }
  Answer<Text> GetRxName(Index rx) override;
  Answer<Text> GetRxId(Index rx) override;
  Answer<Text> GetRxType(Index rx) override;
  Answer<Hz> GetRxFrqMin(Index) override { return Hz{100'000}; }
  Answer<Hz> GetRxFrqMax(Index) override { return Hz{29'999'999}; }
  Answer<Hz> GetRxMaxStep(Index) override { return Hz{30'000}; }
  Answer<Hz> GetRxMinStep(Index) override { return Hz{1}; }
  Answer<Hz> GetRxBfoMin(Index) override { return Hz{-5000}; }
  Answer<Hz> GetRxBfoMax(Index) override { return Hz{5000}; }
  Answer<Flag> IsRxOnline(Index rx) override;
  Answer<Flag> GetRxRemote(Index rx) override;
  Answer<Hz> GetRxFrequency(Index rx, Long selector) override;
  Answer<Hz> GetRxBfo(Index rx) override;
  Answer<Flag> IsRxBfoMode(Index, Setting mode) override { return mode == 1; }
  Answer<Text> GetRxModeName(Index rx, Setting mode) override;
  Answer<Count> GetRxModeCount(Index) override { return Count{7}; }
  Answer<Setting> GetRxMode(Index rx) override;
  Answer<Flag> HasRxAgc(Index rx, Setting) override;
  Answer<Text> GetRxAgcName(Index rx, Setting agc) override;
  Answer<Setting> GetRxAgc(Index rx) override;
  Answer<Flag> HasRxNBl(Index rx, Setting) override;
  Answer<Text> GetRxNBlName(Index rx, Setting blanker) override;
  Answer<Setting> GetRxNBl(Index rx) override;
  Answer<Flag> HasRxAtt(Index rx, Setting) override;
  Answer<Text> GetRxAttName(Index rx, Setting attenuator) override;
  Answer<Setting> GetRxAtt(Index rx) override;
  Answer<Long> GetRxAttDb(Index rx) override;
  Answer<Count> GetRxFilterCount(Index rx) override;
  Answer<Setting> GetRxFilter(Index rx) override;
  Answer<Flag> HasRxHFFilter(Index rx) override;
  Answer<Long> GetRxHFFilter(Index rx) override;
  Answer<Text> GetRxSMtText(Index rx, Long scale) override;
  Answer<Count> GetRxChnCount(Index rx) override;
  Answer<Channel> GetRxChannel(Index rx) override;
  Answer<Count> GetRxOutCount(Index rx) override;
  Answer<Long> GetRxOut(Index rx, Long line) override;
  Answer<Long> GetRxSql(Index rx) override;
  Answer<Long> GetRxLinkState(Index rx) override;

  Outcome SetRxConnect(Index rx, Flag connect) override;
  Outcome SetRxRemote(Index rx, Flag remote) override;
  Outcome SetRxFrequency(Index rx, Flag channelized, Hz frequency) override;
  Outcome SetRxBfo(Index rx, Hz offset) override;
  Outcome SetRxMode(Index rx, Setting mode) override;
  Outcome NextRxMode(Index rx) override;
  Outcome SetRxFilter(Index rx, Setting filter) override;
  Outcome NextRxFilter(Index rx) override;
  Outcome NextRxAgc(Index rx) override;
  Outcome NextRxAtt(Index rx) override;
  Outcome NextRxNBl(Index rx) override;
  Outcome SetRxHFFilter(Index rx, Long state) override;
  Outcome SelectRxChannel(Index rx, Channel channel) override;
  Outcome SetRxOut(Index rx, Long line, Long state) override;

 private:
  using Event = std::function<void(ReceiverListener&, Index)>;
  struct Waiting {
    Instant due;
    int mark;      ///< -1: of no radio
    bool atRadio;  ///< caused there
    Event event;
  };

  MarkedRadio* at(Index rx);
  /// The newest state, told when the radio's delay has passed.
  void tell(const MarkedRadio& radio, bool atRadio, Event event);
  void tellFrequency(MarkedRadio& radio, bool atRadio);
  void tellMode(MarkedRadio& radio, bool atRadio);
  void tellFilter(MarkedRadio& radio, bool atRadio);
  template <class Change>
  Outcome take(Index rx, Change change);
  using Told = void (*)(ReceiverListener&, Index, Setting value, int mark);
  Outcome next(Index rx, Setting MarkedRadio::*setting, Told told);

  std::function<Instant()> now_;
  std::vector<MarkedRadio> radios_;
  std::vector<int> set_;
  std::deque<Waiting> waiting_;
  bool atRadio_ = false;
};

}  // namespace kelvane::fakes
