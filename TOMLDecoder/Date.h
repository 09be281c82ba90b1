#pragma once

#include <cstdint>

#include "TOMLDecoder/LocalDate.h"
#include "TOMLDecoder/LocalTime.h"

namespace toml {

/// A moment, counted from the start of 1970 in Greenwich.
struct Date {
  std::int64_t seconds = 0;
  std::uint32_t nanosecond = 0;  ///< 0 to 999999999, always onwards from `seconds`

  bool operator==(const Date&) const = default;
};

/// Which calendar the year, month and day of a document are counted in.
struct Calendar {
  std::int64_t yearsBeforeChrist = 0;  ///< how many more years it counts than from Christ
  bool isProleptic = false;            ///< whether the Gregorian rules hold before 15 October 1582 as well
};

/// The moment of a date and a time that are `offset` minutes ahead of Greenwich.
Date dateOf(Calendar calendar, LocalDate day, LocalTime time, int offset);
/// The moment so many seconds behind the start of a year, 1970 or 2001. Throws TOMLError `invalidNumber` for
/// what is no number of seconds: not finite, or beyond 64 bits.
Date dateAfter(int year, double seconds);
Date dateAfter(int year, std::int64_t seconds);

}  // namespace toml
