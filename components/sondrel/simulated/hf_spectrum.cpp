#include "components/sondrel/simulated/hf_spectrum.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <numbers>

#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

constexpr std::array kTransmitters{
    //          frequency    dBm  below  above  carrier fading period
    Transmitter{60'000, -70, 10, 10, true, 3, 40},
    Transmitter{198'000, -60, 4'500, 4'500, true, 2, 60},
    Transmitter{490'000, -85, 300, 300, false, 4, 35},
    Transmitter{612'000, -55, 4'500, 4'500, true, 6, 25},
    Transmitter{1'314'000, -62, 4'500, 4'500, true, 12, 18},
    Transmitter{2'182'000, -80, 0, 2'700, true, 10, 15},
    Transmitter{3'650'000, -84, 2'700, 0, false, 14, 12},
    Transmitter{3'955'000, -61, 4'500, 4'500, true, 18, 9},
    Transmitter{4'610'000, -78, 0, 2'400, false, 10, 22},
    Transmitter{5'000'000, -75, 1'000, 1'000, true, 20, 14},
    Transmitter{6'070'000, -52, 4'500, 4'500, true, 16, 11},
    Transmitter{6'160'000, -66, 4'500, 4'500, true, 20, 13},
    Transmitter{7'030'000, -92, 60, 60, false, 12, 6},
    Transmitter{7'100'000, -86, 2'700, 0, false, 15, 8},
    Transmitter{7'205'000, -57, 4'500, 4'500, true, 22, 10},
    Transmitter{8'414'500, -88, 250, 250, false, 9, 17},
    Transmitter{9'580'000, -48, 4'500, 4'500, true, 14, 12},
    Transmitter{9'996'000, -82, 200, 200, true, 12, 16},
    Transmitter{10'000'000, -72, 1'000, 1'000, true, 18, 15},
    Transmitter{11'735'000, -64, 4'500, 4'500, true, 24, 7},
    Transmitter{12'579'000, -90, 250, 250, false, 10, 20},
    Transmitter{14'070'000, -95, 0, 2'500, false, 12, 9},
    Transmitter{14'200'000, -79, 0, 2'700, false, 20, 10},
    Transmitter{15'000'000, -76, 1'000, 1'000, true, 22, 13},
    Transmitter{15'770'000, -58, 5'000, 5'000, false, 6, 30},
    Transmitter{17'640'000, -69, 4'500, 4'500, true, 25, 8},
    Transmitter{21'300'000, -88, 0, 2'700, false, 18, 7},
    Transmitter{27'185'000, -90, 5'000, 5'000, false, 8, 5},
    Transmitter{28'500'000, -93, 0, 2'700, false, 20, 6},
    Transmitter{96'500'000, -50, 75'000, 75'000, false, 1, 90},
    Transmitter{118'100'000, -95, 4'000, 4'000, true, 6, 20},
    Transmitter{145'500'000, -87, 6'000, 6'000, false, 4, 25},
    Transmitter{446'006'250, -99, 6'000, 6'000, false, 10, 11},
};

constexpr milliseconds kSlot{50};

double milliwatts(double dBm) { return std::pow(10.0, dBm / 10); }

std::int64_t slotOf(Instant now) { return now.time_since_epoch() / kSlot; }

/// A number from 0 to 1 that two numbers decide, without any pattern to see in it.
double scatter(std::uint64_t a, std::uint64_t b) {
  std::uint64_t x = a * 0x9e3779b97f4a7c15 + b;
  x = (x ^ x >> 30) * 0xbf58476d1ce4e5b9;
  x = (x ^ x >> 27) * 0x94d049bb133111eb;
  return static_cast<double>((x ^ x >> 31) >> 11) * 0x1p-53;
}

double fadedLevel(const Transmitter& t, Instant now) {
  const double seconds = std::chrono::duration<double>(now.time_since_epoch()).count();
  // Two waves of which neither period is a multiple of the other, so that no fade repeats soon.
  const double angle = 2 * std::numbers::pi * seconds / t.period + t.frequency;
  const double depth = 0.5 + 0.3 * std::sin(angle) + 0.2 * std::sin(angle * 0.37);
  return t.dBm - t.fading * depth;
}

/// The part of a transmitter's power that falls into the passband.
double share(const Transmitter& t, const Passband& band) {
  const bool tuned = band.low <= t.frequency && t.frequency <= band.high;
  const double width = t.above + t.below;
  const double overlap = std::min(band.high, t.frequency + t.above) -
                         static_cast<double>(std::max(band.low, t.frequency - t.below));
  const double spread = width > 0 ? std::clamp(overlap / width, 0.0, 1.0) : 0.0;
  return t.carrier ? (tuned ? 0.9 : 0.0) + 0.1 * spread : spread;
}

}  // namespace

std::span<const Transmitter> transmitters() { return kTransmitters; }

Passband passband(Hz frequency, Setting mode, Hz filter) {
  constexpr Hz kUsual = 3000;
  const Hz width = filter > 0 ? filter : kUsual;
  switch (static_cast<Mode>(mode)) {
    case Mode::Usb:
    case Mode::Fax:
      return {frequency, frequency + width};
    case Mode::Lsb:
      return {frequency - width, frequency};
    default:
      return {frequency - width / 2, frequency + width / 2};
  }
}

double noiseDensity(Hz frequency) {
  // A quiet rural site: 53.6 dB above thermal noise at 1 MHz, 28.6 dB less for each decade.
  constexpr double kThermal = -174;
  const double megahertz = std::max(frequency, 10'000) / 1e6;
  return kThermal + std::max(53.6 - 28.6 * std::log10(megahertz), 8.0);
}

double levelIn(const Passband& band, Instant now) {
  const double width = std::max(band.high - band.low, 1);
  const auto place = static_cast<std::uint64_t>(band.low / 1000);
  const double flicker = 3 * scatter(static_cast<std::uint64_t>(slotOf(now)), place) - 1.5;
  double power = milliwatts(noiseDensity(band.low) + flicker) * width;
  for (const Transmitter& t : kTransmitters) {
    const double part = share(t, band);
    if (part > 0) power += part * milliwatts(fadedLevel(t, now));
  }
  return 10 * std::log10(power);
}

bool crackles(Instant now) { return scatter(static_cast<std::uint64_t>(slotOf(now)), 1) < 0.025; }

}  // namespace kelvane::sondrel
