#pragma once

#include <string>

#include "contract/types.h"

namespace kelvane::fakes {

/// Eight receivers that differ as real ones do, each lacking, refusing or hiding something else: a
/// panel that shows one's values under another's name, or asks the wrong one, shows it with them.
namespace unlike {

inline constexpr Index kFull = 0;       ///< everything there is; channels 0 to 99
inline constexpr Index kPlain = 1;      ///< one filter, no AGC, attenuator, blanker, channels, BFO
inline constexpr Index kScanner = 2;    ///< channels 1 to 120, two lines, two filters of its own
inline constexpr Index kSlow = 3;       ///< answers each request after 1.2 s
inline constexpr Index kStubborn = 4;   ///< refuses every setting but the frequency
inline constexpr Index kSecretive = 5;  ///< has every setting and tells none but the frequency
inline constexpr Index kLost = 6;       ///< tells nothing at all, not even its frequency
inline constexpr Index kFlapping = 7;   ///< its link comes up at the fourth attempt

/// The sections of the configuration, for PanelRig and SondrelRig::configure.
inline std::string receivers() {
  return "[Receiver]\nName=Full\nFrequency=6070000\nMode=AM\nAgc=slow medium fast\nBlanker=2\n"
         "Attenuator=0 10 20\nLines=4\nChannels=0-99\nSquelch=-150\n"
         "[Receiver]\nName=Plain\nFrequency=2182000\nMinimum=1600000\nMaximum=4200000\n"
         "FinestStep=100\nLargestStep=500\nStep=500\nModes=AM USB\nMode=USB\nFilters=2700\n"
         "Bfo=none\nAgc=none\nBlanker=0\nAttenuator=none\nHfFilter=no\nLines=0\nChannels=none\n"
         "Squelch=0\n"
         "[Receiver]\nName=Scanner\nFrequency=14200000\nMinimum=10000\nMaximum=999999999\n"
         "FinestStep=10\nModes=AM FM USB LSB\nMode=FM\nFilters=9000 15000\nBfo=none\n"
         "Agc=medium fast\nBlanker=1\nAttenuator=0 30\nHfFilter=no\nLines=2\nChannels=1-120\n"
         "ChannelSkip=no\nSquelch=0\n"
         "[Receiver]\nName=Slow\nFrequency=3550000\nMode=CW\nAnswerTime=1200\nLines=1\n"
         "Channels=1-10\nChannelTime=150\nAgc=slow off\nAttenuator=none\n"
         "[Receiver]\nName=Stubborn\nFrequency=9580000\nMode=LSB\n"
         "Refuse=mode filter agc blanker attenuator bfo hffilter\nLines=-2\nChannels=0-9\n"
         "[Receiver]\nName=Secretive\nFrequency=21200000\nMode=USB\nLines=0\nChannels=0-9\n"
         "Untold=mode filter agc blanker attenuator bfo hffilter meter squelch\n"
         "[Receiver]\nName=Lost\nFrequency=1000000\nMode=AM\nAgc=none\nLines=0\nChannels=none\n"
         "Untold=frequency mode filter blanker attenuator hffilter meter squelch\n"
         "[Receiver]\nName=Flapping\nFrequency=5000000\nMode=SAM\nFault=1006\nFaultHeals=3\n"
         "LinkTime=50\n";
}

}  // namespace unlike

}  // namespace kelvane::fakes
