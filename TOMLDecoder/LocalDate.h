#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace toml {

/// A day of the calendar, without a time and a place.
struct LocalDate {
  /// Throws TOMLError `invalidDateTimeComponents` if there is no such day.
  LocalDate(int ofYear, int ofMonth, int ofDay);
  /// Throws TOMLError `invalidDateTime`, or `invalidDateTime3` if the text is a time or has one.
  static LocalDate parse(std::string_view text);

  /// 1979-05-27
  std::string text() const;

  std::uint16_t year;  ///< 0 to 9999
  std::uint8_t month;  ///< 1 to 12
  std::uint8_t day;    ///< 1 to 31

  bool operator==(const LocalDate&) const = default;
};

}  // namespace toml
