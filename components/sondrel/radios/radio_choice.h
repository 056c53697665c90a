#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/radios/radio_models.h"
#include "components/sondrel/radios/radio_setup.h"
#include "components/sondrel/radios/serial_ports.h"
#include "components/sondrel/receiver_entry.h"

namespace kelvane::sondrel {

/// What the operator has typed and chosen to add a radio.
struct TypedRadio {
  const RadioModel* model = nullptr;  ///< null where none is chosen
  ModelFacts facts;                   ///< of that model
  std::string device;                 ///< a port's name or words, or host:port
  std::string speed;
  std::string civ;
  bool handshake = false;  ///< the radio uses RTS and CTS
  std::string name;        ///< of the receiver; empty for the model's
};

/// The radio that this makes, or why it makes none. `receivers` are those that there are: none of
/// them may be at the same port.
Result<ReceiverEntry> chosenRadio(const TypedRadio& typed, const std::vector<SerialPort>& ports,
                                  const std::vector<ReceiverEntry>& receivers);

/// The name of the port that a text means: a name, or the words that the system has for it.
std::string portMeant(std::string_view text, const std::vector<SerialPort>& ports);

/// How a port is offered: "COM5: USB Serial".
std::string portOffer(const SerialPort& port);

/// The speed that a model most likely has.
std::int32_t likelySpeed(const ModelFacts& facts);

/// An Icom radio's address as it shows it: "94h".
std::string civText(int address);

}  // namespace kelvane::sondrel
