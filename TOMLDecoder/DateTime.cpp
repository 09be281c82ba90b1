#include "TOMLDecoder/DateTime.h"

#include <algorithm>
#include <string>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/DateTimeScanner.h"

namespace toml {

namespace {

using Kind = TOMLError::Reason::Kind;

[[noreturn]] void fail(Kind kind, std::string message) {
  throw TOMLError({.kind = kind, .message = std::move(message)});
}

/// Digits of a fixed width.
std::string padded(std::int64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

int checkedYear(int year, int month, int day) {
  if (year < 0 || year > 9999) fail(Kind::invalidDateTimeComponents, "year must be between 0000 and 9999");
  if (auto fault = DateTimeScanner::faultOfDate(year, month, day)) {
    fail(Kind::invalidDateTimeComponents, std::move(*fault));
  }
  return year;
}

int checkedHour(int hour, int minute, int second, std::int64_t nanosecond) {
  if (auto fault = DateTimeScanner::faultOfTime(hour, minute, second)) {
    fail(Kind::invalidDateTimeComponents, std::move(*fault));
  }
  if (nanosecond < 0 || nanosecond > 999'999'999) {
    fail(Kind::invalidDateTimeComponents, "nanosecond must be between 0 and 999999999");
  }
  return hour;
}

int checkedOffset(int offset, OffsetDateTime::Features written) {
  using Features = OffsetDateTime::Features;
  const bool hasZ = written.contains(Features::lowercaseZ) || written.contains(Features::uppercaseZ);
  if (offset / 60 > 24 || offset / 60 < -24) {
    fail(Kind::invalidDateTimeComponents, "timezone offset hour must be between 00 and 24");
  }
  if ((hasZ && offset != 0) ||
      (written.contains(Features::lowercaseZ) && written.contains(Features::uppercaseZ)) ||
      (written.contains(Features::lowercaseT) && written.contains(Features::uppercaseT))) {
    fail(Kind::invalidDateTimeComponents, "the letters contradict each other or the offset");
  }
  return offset;
}

std::string offsetText(int offset) {
  const int distance = offset < 0 ? -offset : offset;
  return (offset < 0 ? "-" : "+") + padded(distance / 60, 2) + ":" + padded(distance % 60, 2);
}

}  // namespace

LocalDate::LocalDate(int ofYear, int ofMonth, int ofDay)
    : year(static_cast<std::uint16_t>(checkedYear(ofYear, ofMonth, ofDay))),
      month(static_cast<std::uint8_t>(ofMonth)),
      day(static_cast<std::uint8_t>(ofDay)) {}

LocalDate LocalDate::parse(std::string_view text) {
  const DateTimeScanner::Parts parts = DateTimeScanner::scan(text);
  if (!parts.date) fail(Kind::invalidDateTime3, "expected a date of the form YYYY-MM-DD");
  if (parts.time) fail(Kind::invalidDateTime3, "extra character after date time");
  return *parts.date;
}

std::string LocalDate::text() const {
  return padded(year, 4) + "-" + padded(month, 2) + "-" + padded(day, 2);
}

LocalTime::LocalTime(int ofHour, int ofMinute, int ofSecond, std::int64_t ofNanosecond)
    : hour(static_cast<std::uint8_t>(checkedHour(ofHour, ofMinute, ofSecond, ofNanosecond))),
      minute(static_cast<std::uint8_t>(ofMinute)),
      second(static_cast<std::uint8_t>(ofSecond)),
      nanosecond(static_cast<std::uint32_t>(ofNanosecond)) {}

LocalTime LocalTime::parse(std::string_view text) {
  const DateTimeScanner::Parts parts = DateTimeScanner::scan(text);
  if (parts.date) fail(Kind::invalidDateTime3, "expected valid time");
  return *parts.time;
}

std::string LocalTime::text() const {
  const std::string whole = padded(hour, 2) + ":" + padded(minute, 2) + ":" + padded(second, 2);
  if (nanosecond == 0) return whole;
  const std::string fraction = padded(nanosecond, 9);
  return whole + "." + fraction.substr(0, fraction.find_last_not_of('0') + 1);
}

LocalDateTime LocalDateTime::parse(std::string_view text) {
  const DateTimeScanner::Parts parts = DateTimeScanner::scan(text);
  if (!parts.date) fail(Kind::invalidDateTime3, "expected a date of the form YYYY-MM-DD");
  if (!parts.time) {
    fail(Kind::invalidDateTime3, "expected 'T' or 't' or space to separate date and time");
  }
  if (parts.offset) fail(Kind::invalidDateTime3, "extra character after date time");
  return {*parts.date, *parts.time};
}

OffsetDateTime::OffsetDateTime(LocalDate ofDate, LocalTime ofTime, int ofOffset, Features written)
    : date(ofDate),
      time(ofTime),
      offset(static_cast<std::int16_t>(checkedOffset(ofOffset, written))),
      features(written) {}

OffsetDateTime OffsetDateTime::parse(std::string_view text) {
  const DateTimeScanner::Parts parts = DateTimeScanner::scan(text);
  if (!parts.date) fail(Kind::invalidDateTime3, "expected a date of the form YYYY-MM-DD");
  if (!parts.time) {
    fail(Kind::invalidDateTime3, "expected 'T' or 't' or space to separate date and time");
  }
  if (!parts.offset) fail(Kind::invalidDateTime3, "timezone parsing error");
  return {*parts.date, *parts.time, *parts.offset, parts.features};
}

std::string OffsetDateTime::text() const {
  const char* const letter = features.contains(Features::uppercaseT)   ? "T"
                             : features.contains(Features::lowercaseT) ? "t"
                                                                       : " ";
  const std::string place = features.contains(Features::uppercaseZ)   ? "Z"
                            : features.contains(Features::lowercaseZ) ? "z"
                                                                      : offsetText(offset);
  return date.text() + letter + time.text() + place;
}

}  // namespace toml
