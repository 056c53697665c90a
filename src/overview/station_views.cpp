#include "overview/station_views.h"

#include <string>

namespace kelvane {

StationViews::StationViews(const Services& services)
    : watch_(services.receiver, services.shown, services.levels, services.forwarding,
             services.clocks),
      recorder_(
          {services.saver, services.levelsFolder,
           [&receiver = services.receiver](Index rx) { return receiver.GetRxName(rx).value(); },
           services.keepAwake}),
      overview_({services.receiver, services.frequency, watch_, services.shown, services.stepping,
                 services.settings, services.clipboard, services.colours, services.show,
                 services.linkWords}),
      traces_({services.receiver, watch_, recorder_, services.settings, services.clipboard,
               services.files, services.saver, services.clocks.now, services.colours}),
      tellTrouble_(services.tellTrouble) {
  watch_.setListener(&recorder_);
}

void StationViews::receiversChanged(const ReceiverMoves& moves) {
  watch_.receiversChanged(moves);
  recorder_.receiversChanged();
  overview_.receiversChanged(moves);
  traces_.receiversChanged(moves);
}

void StationViews::tick(Instant now) {
  watch_.now();
  recorder_.tick(now);
  traces_.tick();
  const std::string trouble = recorder_.takeTrouble();
  if (trouble.empty()) return;
  traces_.say(trouble);
  tellTrouble_();
}

}  // namespace kelvane
