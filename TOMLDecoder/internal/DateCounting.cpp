#include "TOMLDecoder/internal/DateCounting.h"

#include <algorithm>
#include <cmath>

#include "TOMLDecoder/TOMLError.h"

namespace toml {

namespace {

constexpr std::int64_t secondsOfDay = 86'400;
constexpr std::int64_t from1970To2001 = 978'307'200;
constexpr double largestSeconds = 9e18;

/// Days from 1 January 1970 to a day, by
/// https://howardhinnant.github.io/date_algorithms.html#days_from_civil. The year begins with March there, so
/// that a leap day comes last; 719,468 days lie between 1 March of the year 0 and 1 January 1970.
std::int64_t dayNumber(std::int64_t year, int month, int day, bool isGregorian) {
  const std::int64_t shifted = month > 2 ? year : year - 1;
  const auto floored = [shifted](std::int64_t divisor) {
    return shifted / divisor - (shifted % divisor < 0 ? 1 : 0);
  };
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const std::int64_t days = shifted * 365 + floored(4) + dayOfYear - 719'468;
  return isGregorian ? days - floored(100) + floored(400) : days - 2;
}

bool isBeforeReform(std::int64_t year, int month, int day) {
  if (year != 1582) return year < 1582;
  return month < 10 || (month == 10 && day < 15);
}

}  // namespace

Date dateOf(Calendar calendar, LocalDate day, LocalTime time, int offset) {
  const std::int64_t year = day.year - calendar.yearsBeforeChrist;
  const bool isGregorian = calendar.isProleptic || !isBeforeReform(year, day.month, day.day);
  const std::int64_t days = dayNumber(year, day.month, day.day, isGregorian);
  const std::int64_t minutes = time.hour * 60 + time.minute - offset;
  return {days * secondsOfDay + minutes * 60 + time.second, time.nanosecond};
}

Date dateAfter(int year, double seconds) {
  if (!(std::abs(seconds) < largestSeconds)) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::invalidNumber,
                     .message = std::to_string(seconds) + " is no time interval"});
  }
  const double whole = std::floor(seconds);
  Date date = dateAfter(year, static_cast<std::int64_t>(whole));
  const double fraction = std::round((seconds - whole) * 1e9);
  date.nanosecond = static_cast<std::uint32_t>(std::min(fraction, 999'999'999.0));
  return date;
}

Date dateAfter(int year, std::int64_t seconds) {
  const std::int64_t start = year == 2001 ? from1970To2001 : 0;
  if (seconds > INT64_MAX - start) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::invalidNumber,
                     .message = std::to_string(seconds) + " is no time interval"});
  }
  return {start + seconds, 0};
}

}  // namespace toml
