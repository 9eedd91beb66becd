#include "base/time.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/assert_recorder.h"

namespace {

using Texts = std::vector<std::string>;

std::string Text(const TimeValue& time) {
  Str text;
  return time.ToText(text) ? std::string(text.View()) : "<invalid>";
}

int64_t SystemNow() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const uint64_t ticks = uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
  return static_cast<int64_t>(ticks / 10000000) - 11644473600;
}

int64_t Bias() { return int64_t{TimeValue(100000).ToSystem()} - 100000; }

TEST(TimeValue, NewIsInvalid) {
  const TimeValue time;
  EXPECT_FALSE(time.IsValid());
  EXPECT_EQ(time.Seconds(), 0xFFFFFFFFu);
  EXPECT_EQ(Text(time), "<invalid>");
  std::tm fields;
  EXPECT_FALSE(time.ToFields(fields));
}

TEST(TimeValue, BiasIsThatOfTheFirstDayOf1970) {
  std::tm record = {};
  record.tm_year = 70;
  record.tm_mday = 1;
  record.tm_hour = 13;
  record.tm_isdst = -1;
  EXPECT_EQ(Bias(), int64_t{mktime(&record)} - 46800);
}

TEST(TimeValue, ConversionFromAndToSystemTime) {
  const TimeValue time = TimeValue::FromSystem(1000000);
  EXPECT_EQ(time.Seconds(), 1000000 - Bias());
  EXPECT_EQ(time.ToSystem(), 1000000u);
}

TEST(TimeValue, NegativeConversionIsInvalid) {
  EXPECT_FALSE(TimeValue::FromSystem(-200000).IsValid());
  EXPECT_FALSE(TimeValue::FromSystem(Bias() - 1).IsValid());
  EXPECT_EQ(TimeValue::FromSystem(Bias()).Seconds(), 0u);
  EXPECT_EQ(TimeValue(0).ToSystem() == kInvalidTime, Bias() < 0);
}

TEST(TimeValue, ConversionBeyond32BitsIsInvalid) {
  EXPECT_FALSE(TimeValue::FromSystem(int64_t{1} << 40).IsValid());
}

TEST(TimeValue, SystemTimeOfAnInvalidOneAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(TimeValue().ToSystem(), kInvalidTime);
  EXPECT_EQ(recorder.Only(), "mTime != kInvalidTime");
}

TEST(TimeValue, Now) {
  const int64_t before = SystemNow();
  const TimeValue now = TimeValue::Now();
  const int64_t after = SystemNow();
  EXPECT_GE(int64_t{now.ToSystem()}, before);
  EXPECT_LE(int64_t{now.ToSystem()}, after);
}

TEST(TimeValue, BootTime) {
  const int64_t before = SystemNow() - GetTickCount() / 1000;
  const int64_t boot = TimeValue::BootTime().ToSystem();
  EXPECT_GE(boot, before - 1);
  EXPECT_LE(boot, before + 2);
}

TEST(TimeValue, FromFields) {
  EXPECT_EQ(Text(TimeValue::FromFields(2024, 3, 7, 9, 5, 30)), "03/07/2024 09:05:30");
  EXPECT_EQ(TimeValue::FromFields(1970, 1, 2, 0, 0, 0).Seconds(), 86400u);
  EXPECT_EQ(Text(TimeValue::FromFields(2024, 2, 29, 23, 59, 59)), "02/29/2024 23:59:59");
  EXPECT_EQ(Text(TimeValue::FromFields(2024, 7, 1, 12, 0, 0)), "07/01/2024 12:00:00");
}

TEST(TimeValue, FieldsAtTheirLimitsAreSilent) {
  EXPECT_EQ(Text(TimeValue::FromFields(2038, 1, 18, 0, 0, 0)), "01/18/2038 00:00:00");
  EXPECT_EQ(Text(TimeValue::FromFields(1970, 12, 31, 23, 59, 59)), "12/31/1970 23:59:59");
  EXPECT_EQ(Text(TimeValue::FromFields(2024, 2, 1, 0, 0, 0)), "02/01/2024 00:00:00");
}

// One field outside its range: what is asserted, in order.
TEST(TimeValue, FieldRangesAreAsserted) {
  const struct {
    int32_t fields[6];
    const char* check;
  } rows[] = {
      {{2024, 0, 7, 9, 5, 30}, "ptime->tm_mon >= 0 && ptime->tm_mon <= 11"},
      {{2024, 13, 7, 9, 5, 30}, "ptime->tm_mon >= 0 && ptime->tm_mon <= 11"},
      {{2024, 3, 0, 9, 5, 30}, "ptime->tm_mday >= 1 && ptime->tm_mday <= 31"},
      {{2024, 3, 32, 9, 5, 30}, "ptime->tm_mday >= 1 && ptime->tm_mday <= 31"},
      {{2024, 3, 7, -1, 5, 30}, "ptime->tm_hour >= 0 && ptime->tm_hour <= 23"},
      {{2024, 3, 7, 24, 5, 30}, "ptime->tm_hour >= 0 && ptime->tm_hour <= 23"},
      {{2024, 3, 7, 9, -1, 30}, "ptime->tm_min >= 0 && ptime->tm_min <= 59"},
      {{2024, 3, 7, 9, 60, 30}, "ptime->tm_min >= 0 && ptime->tm_min <= 59"},
      {{2024, 3, 7, 9, 5, -1}, "ptime->tm_sec >= 0 && ptime->tm_sec <= 61"},
      {{2024, 3, 7, 9, 5, 62}, "ptime->tm_sec >= 0 && ptime->tm_sec <= 61"},
  };
  for (const auto& row : rows) {
    AssertRecorder recorder;
    const int32_t* f = row.fields;
    const TimeValue time = TimeValue::FromFields(f[0], f[1], f[2], f[3], f[4], f[5]);
    EXPECT_EQ(recorder.Only(), row.check);
    EXPECT_TRUE(time.IsValid()) << "the conversion goes on and normalises: " << row.check;
  }
}

TEST(TimeValue, OneMonthTooManyIsTheNextYear) {
  AssertRecorder recorder;
  EXPECT_EQ(Text(TimeValue::FromFields(2024, 13, 7, 9, 5, 30)), "01/07/2025 09:05:30");
}

TEST(TimeValue, Second61IsAllowed) {
  EXPECT_EQ(Text(TimeValue::FromFields(2024, 3, 7, 9, 5, 61)), "03/07/2024 09:06:01");
}

TEST(TimeValue, Year2039AssertsTheYearRange) {
  AssertRecorder recorder;
  const TimeValue time = TimeValue::FromFields(2039, 1, 1, 0, 0, 0);
  ASSERT_FALSE(recorder.Texts().empty());
  EXPECT_EQ(recorder.Texts()[0], "ptime->tm_year >= 70 && ptime->tm_year <= 138");
  EXPECT_EQ(time.IsValid(), recorder.Texts().size() == 1);
}

TEST(TimeValue, Year1969AssertsTheYearRange) {
  AssertRecorder recorder;
  const TimeValue time = TimeValue::FromFields(1969, 6, 1, 0, 0, 0);
  EXPECT_EQ(recorder.Texts(),
            (Texts{"ptime->tm_year >= 70 && ptime->tm_year <= 138", "mTime != kInvalidTime"}));
  EXPECT_FALSE(time.IsValid());
}

TEST(TimeValue, AFailedConversionAsserts) {
  AssertRecorder recorder;
  const TimeValue time = TimeValue::FromFields(INT32_MIN, 1, 1, 0, 0, 0);
  EXPECT_EQ(recorder.Texts(),
            (Texts{"ptime->tm_year >= 70 && ptime->tm_year <= 138", "mTime != kInvalidTime"}));
  EXPECT_FALSE(time.IsValid());
}

TEST(TimeValue, ParsesItsText) {
  EXPECT_EQ(Text(TimeValue::FromText("03/07/2024 09:05:30")), "03/07/2024 09:05:30");
  EXPECT_EQ(TimeValue::FromText("03/07/2024 09:05:30").Seconds(),
            TimeValue::FromFields(2024, 3, 7, 9, 5, 30).Seconds());
}

TEST(TimeValue, ShortTextAssertsAtThePositionsAndStaysInvalid) {
  AssertRecorder recorder;
  const TimeValue time = TimeValue::FromText("3/7/2024 9:05:30");
  EXPECT_EQ(recorder.Texts(), (Texts{"str[2] == '/'", "str[5] == '/'", "str[10] == ' '", "str[16] == ':'",
                                     "String too short."}));
  EXPECT_FALSE(time.IsValid());
}

TEST(TimeValue, EmptyTextIsReadOnlyWithinItself) {
  AssertRecorder recorder;
  EXPECT_FALSE(TimeValue::FromText("").IsValid());
  EXPECT_EQ(recorder.Texts().size(), 6u);
  EXPECT_EQ(recorder.Texts().back(), "String too short.");
}

TEST(TimeValue, NullTextAssertsAndStaysInvalid) {
  AssertRecorder recorder;
  EXPECT_FALSE(TimeValue::FromText(nullptr).IsValid());
  EXPECT_EQ(recorder.Texts().front(), "str");
}

TEST(TimeValue, EachSeparatorIsAsserted) {
  const struct {
    size_t position;
    const char* check;
  } rows[] = {{2, "str[2] == '/'"},
              {5, "str[5] == '/'"},
              {10, "str[10] == ' '"},
              {13, "str[13] == ':'"},
              {16, "str[16] == ':'"}};
  for (const auto& row : rows) {
    std::string text = "03/07/2024 09:05:30";
    text[row.position] = '.';
    AssertRecorder recorder;
    const TimeValue time = TimeValue::FromText(text.c_str());
    EXPECT_EQ(recorder.Only(), row.check);
    EXPECT_EQ(Text(time), "03/07/2024 09:05:30");  // and the numbers are read all the same
  }
}

TEST(TimeValue, TextRoundTripOverTheYear) {
  for (int32_t month = 1; month <= 12; ++month) {
    const TimeValue time = TimeValue::FromFields(2023, month, 15, 13, 14, 15);
    EXPECT_EQ(TimeValue::FromText(Text(time).c_str()).Seconds(), time.Seconds()) << month;
  }
}

TEST(TimeValue, ToFields) {
  std::tm fields = {};
  ASSERT_TRUE(TimeValue::FromFields(2024, 3, 7, 9, 5, 30).ToFields(fields));
  EXPECT_EQ(fields.tm_year, 124);
  EXPECT_EQ(fields.tm_mon, 2);
  EXPECT_EQ(fields.tm_mday, 7);
  EXPECT_EQ(fields.tm_hour, 9);
  EXPECT_EQ(fields.tm_min, 5);
  EXPECT_EQ(fields.tm_sec, 30);
  EXPECT_EQ(fields.tm_wday, 4);
  EXPECT_EQ(fields.tm_yday, 66);
}

TEST(TimeValue, FieldsBeyondTheSystemsCalendar) {
  std::tm fields = {};
  ASSERT_TRUE(TimeValue(0xFFFFFFFEu).ToFields(fields));
  EXPECT_EQ(fields.tm_wday, 0);
  EXPECT_EQ(fields.tm_yday, 37);
  ASSERT_TRUE(TimeValue(0xF4865700u).ToFields(fields));
  EXPECT_EQ(fields.tm_wday, 5);
  EXPECT_EQ(fields.tm_yday, 0);
  EXPECT_EQ(Text(TimeValue(0xFFFFFFFEu)), "02/07/2106 06:28:14");
  EXPECT_EQ(Text(TimeValue(0xF4865700u)), "01/01/2100 00:00:00");
}

TEST(TimeValue, Add) {
  TimeValue time(1000);
  time.Add(500);
  EXPECT_EQ(time.Seconds(), 1500u);
  time.Add(-1500);
  EXPECT_EQ(time.Seconds(), 0u);
  time.Add(-1);
  EXPECT_FALSE(time.IsValid());
}

TEST(TimeValue, AddBeyondTheRangeIsInvalid) {
  TimeValue time(0xFFFFFFF0u);
  time.Add(0x20);
  EXPECT_FALSE(time.IsValid());
}

TEST(TimeValue, AddToAnInvalidOneAsserts) {
  AssertRecorder recorder;
  TimeValue time;
  time.Add(5);
  EXPECT_EQ(recorder.Only(), "mTime != kInvalidTime");
  EXPECT_FALSE(time.IsValid());
}

TEST(TimeValue, Difference) {
  EXPECT_EQ(TimeValue(1500).Difference(TimeValue(1000)), 500);
  EXPECT_EQ(TimeValue(1000).Difference(TimeValue(1500)), -500);
}

TEST(TimeValue, DifferenceNeedsValidValues) {
  AssertRecorder recorder;
  EXPECT_EQ(TimeValue().Difference(TimeValue(5)), 0);
  EXPECT_EQ(recorder.Only(), "mTime != kInvalidTime");
  recorder.Clear();
  EXPECT_EQ(TimeValue(5).Difference(TimeValue()), 0);
  EXPECT_EQ(recorder.Only(), "time != kInvalidTime");
}

TEST(TimeValue, SpanAssertsWhenNegative) {
  EXPECT_EQ(TimeValue(1500).Span(TimeValue(1000)), 500);
  EXPECT_EQ(TimeValue(1500).Span(TimeValue(1500)), 0);
  AssertRecorder recorder;
  EXPECT_EQ(TimeValue(1000).Span(TimeValue(1500)), -500);
  EXPECT_EQ(recorder.Only(), "time >= 0");
  recorder.Clear();
  EXPECT_EQ(TimeValue(1499).Span(TimeValue(1500)), -1);
  EXPECT_EQ(recorder.Only(), "time >= 0");
}

}  // namespace
