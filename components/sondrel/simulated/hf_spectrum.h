#pragma once

#include <span>

#include "base/time.h"
#include "contract/types.h"

namespace kelvane::sondrel {

/// A transmitter of the simulated band.
struct Transmitter {
  Hz frequency;   ///< its carrier, or the suppressed one
  double dBm;     ///< received without fading
  Hz below;       ///< how far its signal reaches below the frequency, Hz
  Hz above;       ///< and above it
  bool carrier;   ///< nine tenths of its power stand on the frequency itself
  double fading;  ///< depth, dB
  double period;  ///< of the fading, seconds
};

/// All transmitters, in ascending order of frequency.
std::span<const Transmitter> transmitters();

/// What a receiver listens to: a piece of the band, as its mode and filter cut it out.
struct Passband {
  Hz low = 0;
  Hz high = 0;
};
/// Upper sideband modes listen above the frequency, LSB below it, all others to both sides.
Passband passband(Hz frequency, Setting mode, Hz filter);

/// The level in a passband, dBm: the noise of the band, which falls as the frequency rises, and the
/// fading transmitters in it. The same for the same passband and moment, always.
double levelIn(const Passband& passband, Instant now);

/// Noise of the band in one hertz, dBm.
double noiseDensity(Hz frequency);

/// Whether a spark crackles at this moment: about every other second, for a twentieth of one.
bool crackles(Instant now);

}  // namespace kelvane::sondrel
