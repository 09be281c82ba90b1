#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <variant>

#include "TOMLDecoder/Date.h"
#include "TOMLDecoder/Parser.h"

namespace toml {

/// Under which names a document's keys are looked for. Keys that become equal are the same key twice.
struct KeyStrategy {
  static KeyStrategy useOriginalKeys() { return {}; }
  /// `first_name` is looked for as `firstName`; underscores in front and at the end stay.
  static KeyStrategy convertFromSnakeCase();
  static KeyStrategy custom(KeyTransform transform) { return {std::move(transform)}; }

  KeyTransform transform;  ///< none for the original keys
};

/// Which calendar makes a moment of a date and a time.
struct DateStrategy {
  /// Julian before 15 October 1582.
  static DateStrategy gregorianCalendar() { return {{0, false}}; }
  static DateStrategy prolepticGregorianCalendar() { return {{0, true}}; }
  /// "gregorian", "iso8601", "buddhist" or "roc". Throws TOMLError `invalidDateTimeComponents` for another.
  static DateStrategy calendar(std::string_view identifier);

  Calendar counting;
};

/// What a number that is read as a Date counts its seconds from.
enum class TimeIntervalStrategy { since1970, since2001 };

struct Strategy {
  KeyStrategy key = KeyStrategy::useOriginalKeys();
  DateStrategy date = DateStrategy::gregorianCalendar();
  TimeIntervalStrategy timeInterval = TimeIntervalStrategy::since1970;
};

}  // namespace toml
