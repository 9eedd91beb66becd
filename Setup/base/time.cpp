#include "base/time.h"

#include <windows.h>

#include <algorithm>
#include <limits>

#include "base/assert.h"
#include "base/timetext.h"

namespace {

constexpr int64_t kSecondsPerDay = 86400;
constexpr int64_t kTicksPerSecond = 10000000;        // of a FILETIME
constexpr int64_t kEpochTicks = 116444736000000000;  // 1 January 1970 as a FILETIME
constexpr uint32_t kFirstSecondOfBias = 46800;  // 13:00:00: early enough for no zone to lie before 1970 UTC

FILETIME FileTimeOf(int64_t seconds) {
  const auto ticks = static_cast<uint64_t>(seconds * kTicksPerSecond + kEpochTicks);
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

int64_t SystemSeconds() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const uint64_t ticks = uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
  return (static_cast<int64_t>(ticks) - kEpochTicks) / kTicksPerSecond;
}

std::tm CalendarRecord(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                       int32_t second) {
  constexpr int64_t kLowest = std::numeric_limits<int>::min();
  std::tm fields = {};
  fields.tm_year = static_cast<int>(std::max(int64_t{year} - 1900, kLowest));
  fields.tm_mon = static_cast<int>(std::max(int64_t{month} - 1, kLowest));
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  fields.tm_isdst = -1;
  return fields;
}

void CheckCalendarRecord(const std::tm* ptime) {
  VT_ASSERT(ptime->tm_year >= 70 && ptime->tm_year <= 138, "ptime->tm_year >= 70 && ptime->tm_year <= 138");
  VT_ASSERT(ptime->tm_mon >= 0 && ptime->tm_mon <= 11, "ptime->tm_mon >= 0 && ptime->tm_mon <= 11");
  VT_ASSERT(ptime->tm_mday >= 1 && ptime->tm_mday <= 31, "ptime->tm_mday >= 1 && ptime->tm_mday <= 31");
  VT_ASSERT(ptime->tm_hour >= 0 && ptime->tm_hour <= 23, "ptime->tm_hour >= 0 && ptime->tm_hour <= 23");
  VT_ASSERT(ptime->tm_min >= 0 && ptime->tm_min <= 59, "ptime->tm_min >= 0 && ptime->tm_min <= 59");
  VT_ASSERT(ptime->tm_sec >= 0 && ptime->tm_sec <= 61, "ptime->tm_sec >= 0 && ptime->tm_sec <= 61");
}

// Seconds to add to local time for system time.
int64_t TimeZoneBias() {
  static const int64_t bias = [] {
    std::tm record = CalendarRecord(1970, 1, 1, 13, 0, 0);
    return int64_t{std::mktime(&record)} - kFirstSecondOfBias;
  }();
  return bias;
}

uint32_t InRange(int64_t seconds) {
  return seconds >= 0 && seconds < kInvalidTime ? static_cast<uint32_t>(seconds) : kInvalidTime;
}

// The fields of a count of local seconds that the C library cannot convert: it ends in
// 2038 and begins in 1970 UTC.
bool FieldsByCalendar(uint32_t localSeconds, std::tm& fields) {
  const FILETIME fileTime = FileTimeOf(localSeconds);
  SYSTEMTIME parts;
  if (!FileTimeToSystemTime(&fileTime, &parts)) return false;
  const int year = parts.wYear;
  const int64_t daysToYear =
      365 * int64_t{year - 1970} + (year - 1969) / 4 - (year - 1901) / 100 + (year - 1601) / 400;
  fields = CalendarRecord(year, parts.wMonth, parts.wDay, parts.wHour, parts.wMinute, parts.wSecond);
  fields.tm_wday = parts.wDayOfWeek;
  fields.tm_yday = static_cast<int>(localSeconds / kSecondsPerDay - daysToYear);
  return true;
}

}  // namespace

TimeValue TimeValue::Now() { return FromSystem(SystemSeconds()); }

TimeValue TimeValue::BootTime() { return FromSystem(SystemSeconds() - GetTickCount() / 1000); }

TimeValue TimeValue::FromSystem(int64_t utcSeconds) {
  return TimeValue(InRange(utcSeconds - TimeZoneBias()));
}

TimeValue TimeValue::FromFields(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                                int32_t second) {
  std::tm record = CalendarRecord(year, month, day, hour, minute, second);
  CheckCalendarRecord(&record);
  const std::time_t systemTime = std::mktime(&record);
  const TimeValue value = systemTime != -1 ? FromSystem(systemTime) : TimeValue();
  VT_ASSERT(value.IsValid(), "mTime != kInvalidTime");
  return value;
}

TimeValue TimeValue::FromText(const char* text) {
  VT_ASSERT(text != nullptr, "str");
  const std::string_view str = text != nullptr ? text : "";
  for (const TimeText::Separator& separator : TimeText::kSeparators) {
    VT_ASSERT(HasSeparator(str, separator), separator.check);
  }
  TimeText fields;
  if (!ParseTimeText(str, fields)) {
    VT_FAIL("String too short.");
    return TimeValue();
  }
  return FromFields(fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second);
}

uint32_t TimeValue::ToSystem() const {
  if (!VT_ASSERT(IsValid(), "mTime != kInvalidTime")) return kInvalidTime;
  return InRange(int64_t{mTime} + TimeZoneBias());
}

bool TimeValue::ToText(Str& result) const {
  std::tm fields;
  if (!ToFields(fields)) return false;
  const TimeText text = {fields.tm_mon + 1, fields.tm_mday, fields.tm_year + 1900,
                         fields.tm_hour,    fields.tm_min,  fields.tm_sec};
  result = std::string_view(PrintTimeText(text));
  return true;
}

bool TimeValue::ToFields(std::tm& fields) const {
  if (!IsValid()) return false;
  const uint32_t systemTime = ToSystem();
  if (systemTime <= static_cast<uint32_t>(std::numeric_limits<std::time_t>::max())) {
    const auto seconds = static_cast<std::time_t>(systemTime);
    if (const std::tm* const local = std::localtime(&seconds)) {
      fields = *local;
      return true;
    }
  }
  return FieldsByCalendar(mTime, fields);
}

void TimeValue::Add(int32_t seconds) {
  if (!VT_ASSERT(IsValid(), "mTime != kInvalidTime")) return;
  mTime = InRange(int64_t{mTime} + seconds);
}

int32_t TimeValue::Difference(const TimeValue& other) const {
  VT_ASSERT(IsValid(), "mTime != kInvalidTime");
  VT_ASSERT(other.IsValid(), "time != kInvalidTime");
  if (!IsValid() || !other.IsValid()) return 0;
  const int64_t time = int64_t{mTime} - other.mTime;
  return static_cast<int32_t>(
      std::clamp<int64_t>(time, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

int32_t TimeValue::Span(const TimeValue& other) const {
  const int32_t time = Difference(other);
  VT_ASSERT(time >= 0, "time >= 0");
  return time;
}
