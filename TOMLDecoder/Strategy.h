#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace toml {

/// Gives the name under which a key of a document is stored.
using KeyTransform = std::function<std::string(std::string_view)>;

/// Under which names a document's keys are looked for. Two keys of a table that become equal are an error, as
/// if the document had the same key twice.
struct KeyStrategy {
  static KeyStrategy useOriginalKeys() { return {}; }
  /// `first_name` is looked for as `firstName`; underscores at the start and at the end stay.
  static KeyStrategy convertFromSnakeCase();
  static KeyStrategy custom(KeyTransform transform) { return {std::move(transform)}; }

  KeyTransform transform;  ///< empty for the original keys
};

/// Which calendar the year, month and day of a document are counted in.
struct Calendar {
  std::int64_t yearsBeforeChrist = 0;  ///< how far its years are ahead of those of the common era
  bool isProleptic = false;            ///< whether the Gregorian rules hold before 15 October 1582 as well
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
