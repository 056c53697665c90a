#include "win32/system_calendar.h"

#include <windows.h>

namespace kelvane::win32 {

namespace {

DateTime fromSystem(const SYSTEMTIME& time) {
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

SYSTEMTIME toSystem(const DateTime& time) {
  SYSTEMTIME result{};
  result.wYear = static_cast<WORD>(time.year);
  result.wMonth = static_cast<WORD>(time.month);
  result.wDay = static_cast<WORD>(time.day);
  result.wHour = static_cast<WORD>(time.hour);
  result.wMinute = static_cast<WORD>(time.minute);
  result.wSecond = static_cast<WORD>(time.second);
  return result;
}

}  // namespace

DateTime SystemCalendar::now() const {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  return fromSystem(time);
}

DateTime SystemCalendar::utc(const DateTime& local) const {
  const SYSTEMTIME there = toSystem(local);
  // Summer time began on other days in other years.
  TIME_ZONE_INFORMATION zone{};
  const bool known = GetTimeZoneInformationForYear(there.wYear, nullptr, &zone) != FALSE;
  SYSTEMTIME result{};
  if (!TzSpecificLocalTimeToSystemTime(known ? &zone : nullptr, &there, &result)) return local;
  return fromSystem(result);
}

}  // namespace kelvane::win32
