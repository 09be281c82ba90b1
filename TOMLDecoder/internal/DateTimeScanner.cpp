#include "TOMLDecoder/internal/DateTimeScanner.h"

#include <algorithm>

#include "TOMLDecoder/TOMLError.h"

namespace toml::DateTimeScanner {

namespace {

[[noreturn]] void fail(std::string message) {
  throw TOMLError({.kind = TOMLError::Reason::Kind::invalidDateTime, .message = std::move(message)});
}

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

std::size_t digitsAt(std::string_view text) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
}

bool take(std::string_view& rest, char byte) {
  if (rest.empty() || rest.front() != byte) return false;
  rest.remove_prefix(1);
  return true;
}

bool isLeap(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysIn(int month) {
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

/// Nine digits of a second; further ones are dropped, as TOML asks for.
int scanNanosecond(std::string_view& rest) {
  const std::size_t length = digitsAt(rest);
  if (length == 0) fail("decimal point must be followed by digits");
  int nanosecond = 0;
  for (std::size_t index = 0; index < 9; ++index) {
    nanosecond = nanosecond * 10 + (index < length ? rest[index] - '0' : 0);
  }
  rest.remove_prefix(length);
  return nanosecond;
}

/// What stands between a date and a time.
void scanSeparator(std::string_view& rest, OffsetDateTime::Features& features) {
  if (take(rest, 'T')) {
    features.bits |= OffsetDateTime::Features::uppercaseT;
  } else if (take(rest, 't')) {
    features.bits |= OffsetDateTime::Features::lowercaseT;
  } else if (!take(rest, ' ')) {
    fail("expected 'T' or 't' or space to separate date and time");
  }
}

void checkOffset(int hour, int minute) {
  if (hour > 24) fail("timezone offset hour must be between 00 and 24");
  if (minute > 59) fail("timezone offset minute must be between 00 and 59");
}

int scanOffsetDigits(std::string_view& rest) {
  const std::size_t hourDigits = digitsAt(rest);
  if (hourDigits < 2) fail("timezone offset must have at least 2 digits for hour");
  if (hourDigits > 2) fail("timezone offset hour must be exactly 2 digits");
  const int hour = *scanDigits(rest, 2, 2);
  if (!take(rest, ':')) fail("timezone offset must include minutes (format: ±HH:MM)");
  if (digitsAt(rest) != 2) fail("timezone offset minute must be exactly 2 digits");
  const int minute = *scanDigits(rest, 2, 2);
  checkOffset(hour, minute);
  return hour * 60 + minute;
}

}  // namespace

Parts scan(std::string_view text) {
  std::string_view rest = text;
  Parts parts;
  if (rest.size() > 2 && rest[2] == ':') {
    parts.time = scanTime(rest);
  } else {
    parts.date = scanDate(rest);
    if (!rest.empty()) {
      scanSeparator(rest, parts.features);
      parts.time = scanTime(rest);
      parts.offset = scanTimezoneOffset(rest, parts.features);
    }
  }
  if (!rest.empty()) fail("extra character after date time");
  return parts;
}

std::optional<int> scanDigits(std::string_view& rest, std::size_t least, std::size_t most) {
  const std::size_t length = std::min(digitsAt(rest), most);
  if (length < least) return std::nullopt;
  int number = 0;
  for (const char digit : rest.substr(0, length)) number = number * 10 + (digit - '0');
  rest.remove_prefix(length);
  return number;
}

LocalDate scanDate(std::string_view& rest) {
  const auto year = scanDigits(rest, 4, 4);
  const bool hasMonth = year && take(rest, '-');
  const auto month = hasMonth ? scanDigits(rest, 2, 2) : std::nullopt;
  const bool hasDay = month && take(rest, '-');
  const auto day = hasDay ? scanDigits(rest, 2, 2) : std::nullopt;
  if (!day) fail("expected a date of the form YYYY-MM-DD");
  if (auto fault = faultOfDate(*year, *month, *day)) fail(std::move(*fault));
  return {*year, *month, *day};
}

LocalTime scanTime(std::string_view& rest) {
  const auto hour = scanDigits(rest, 2, 2);
  const bool hasMinute = hour && take(rest, ':');
  const auto minute = hasMinute ? scanDigits(rest, 2, 2) : std::nullopt;
  const bool hasSecond = minute && take(rest, ':');
  const auto second = hasSecond ? scanDigits(rest, 2, 2) : std::nullopt;
  if (!second) fail("expected valid time");
  if (auto fault = faultOfTime(*hour, *minute, *second)) fail(std::move(*fault));
  return {*hour, *minute, *second, take(rest, '.') ? scanNanosecond(rest) : 0};
}

std::optional<int> scanTimezoneOffset(std::string_view& rest, OffsetDateTime::Features& features) {
  if (take(rest, 'Z')) {
    features.bits |= OffsetDateTime::Features::uppercaseZ;
    return 0;
  }
  if (take(rest, 'z')) {
    features.bits |= OffsetDateTime::Features::lowercaseZ;
    return 0;
  }
  if (take(rest, '+')) return scanOffsetDigits(rest);
  if (take(rest, '-')) return -scanOffsetDigits(rest);
  return std::nullopt;
}

std::optional<std::string> faultOfDate(int year, int month, int day) {
  if (month < 1 || month > 12) return "month must be between 01 and 12";
  if (day < 1 || day > 31) return "day must be between 01 and 31";
  if (month == 2) {
    if (isLeap(year) && day > 29) return "February only has 29 days in leap years";
    if (!isLeap(year) && day > 28) return "February only has 28 days in non-leap years";
  } else if (day > daysIn(month)) {
    return std::to_string(day) + " is invalid for month " + std::to_string(month);
  }
  return std::nullopt;
}

std::optional<std::string> faultOfTime(int hour, int minute, int second) {
  if (hour < 0 || hour > 23) return "hour must be between 00 and 23";
  if (minute < 0 || minute > 59) return "minute must be between 00 and 59";
  if (second < 0 || second > 59) return "second must be between 00 and 59";
  return std::nullopt;
}

bool looksLikeDateTime(std::string_view text) {
  const auto digits = [text](std::size_t count) { return digitsAt(text.substr(0, count)) == count; };
  return (text.size() > 4 && text[4] == '-' && digits(4)) || (text.size() > 2 && text[2] == ':' && digits(2));
}

}  // namespace toml::DateTimeScanner
