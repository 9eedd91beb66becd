#pragma once
// Time value: seconds since 1 January 1970 00:00 of local wall-clock time, 32 bits unsigned.
#include <cstdint>
#include <ctime>

#include "base/str.h"

constexpr uint32_t kInvalidTime = 0xFFFFFFFF;

class TimeValue {
 public:
  TimeValue() = default;  // invalid
  explicit TimeValue(uint32_t seconds) : mTime(seconds) {}
  static TimeValue Now();
  static TimeValue BootTime();
  // From seconds since 1970 UTC; invalid when the result would be negative.
  static TimeValue FromSystem(int64_t utcSeconds);
  static TimeValue FromFields(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute,
                              int32_t second);
  // Parses MM/DD/YYYY HH:MM:SS, 19 characters.
  static TimeValue FromText(const char* text);

  bool IsValid() const { return mTime != kInvalidTime; }
  uint32_t Seconds() const { return mTime; }
  // Seconds since 1970 UTC, or kInvalidTime.
  uint32_t ToSystem() const;
  [[nodiscard]] bool ToText(Str& result) const;
  // Calendar fields: years counted from 1900, months from 0.
  [[nodiscard]] bool ToFields(std::tm& fields) const;
  // Adds seconds to a valid value; a negative result is invalid.
  void Add(int32_t seconds);
  // this - other in seconds, both valid.
  int32_t Difference(const TimeValue& other) const;
  // As Difference where a non-negative span is required.
  int32_t Span(const TimeValue& other) const;

 private:
  uint32_t mTime = kInvalidTime;
};
