#pragma once

#include <cstdint>

#include "TOMLDecoder/DateTime.h"
#include "TOMLDecoder/Strategy.h"

namespace toml {

/// The moment of a date and a time that are `offset` minutes ahead of UTC.
Date dateOf(Calendar calendar, LocalDate day, LocalTime time, int offset);
/// The moment so many seconds after the start of a year, 1970 or 2001. Throws TOMLError `invalidNumber` if
/// they are not finite, or more than 64 bits hold.
Date dateAfter(int year, double seconds);
Date dateAfter(int year, std::int64_t seconds);

}  // namespace toml
