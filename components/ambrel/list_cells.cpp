#include "components/ambrel/list_cells.h"

#include "components/ambrel/kilohertz.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

std::string cellOf(const StationTable& table, Hz frequency, const Record& record,
                   const StationDetails& details, ListColumn column) {
  switch (column) {
    case ListColumn::Frequency:
      return kilohertzText(frequency);
    case ListColumn::Name:
      return details.name;
    case ListColumn::Info:
      return details.language.empty() ? details.info : details.language;
    case ListColumn::Times:
      return details.times;
    case ListColumn::Days:
      return details.days;
    case ListColumn::Site:
      return details.site.empty() ? details.extra : details.site;
    case ListColumn::Target:
      return details.target;
    case ListColumn::Mode:
      return std::string(modeName(details.mode));
    case ListColumn::Set:
      return table.sets()[record.set].name;
    case ListColumn::Count:
      break;
  }
  return {};
}

}  // namespace kelvane::ambrel
