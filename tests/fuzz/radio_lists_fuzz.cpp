#include "components/sondrel/radios/radio_choice.h"
#include "components/sondrel/radios/radio_faults.h"
#include "components/sondrel/radios/server_program.h"
#include "tests/fuzz/fuzz_target.h"

// What a rigctld, or a program that is none, prints: its models, what one can do, its troubles.
FUZZ_TARGET(radio_lists) {
  using namespace kelvane;
  using namespace kelvane::sondrel;
  if (const auto models = readModels(input)) {
    const ModelSearch search(*models);
    fuzz::promise(search.find("", "").size() == models->size(), "a model is lost");
    for (const RadioModel& model : *models) {
      fuzz::promise(model.number > 0 && !model.name.empty(), "a model without a name");
      fuzz::promise(!search.find(model.maker, model.name).empty(), "one is not found by its name");
      if (&model - models->data() > 20) break;
    }
  }
  const ModelFacts facts = readModelFacts(input, input);
  fuzz::promise(!speedsOf(facts).empty(), "no speed to choose");
  fuzz::promise(facts.civ < 256, "an address that is none");
  likelySpeed(facts);
  readServerVersion(input);
  const RadioSetup setup{1, std::string(input.substr(0, 30)), 9600, std::string(input), {}, {}};
  radioFault(setup, input);
  const std::string word = quotedWord(input.substr(0, 50));
  fuzz::promise(word.size() >= std::min<std::size_t>(input.size(), 50), "a word is cut");
  checkCiv(input);
}
