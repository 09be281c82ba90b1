#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace toml {

/// A time of the day, without a day and a place.
struct LocalTime {
  /// Throws TOMLError `invalidDateTimeComponents` if there is no such time.
  LocalTime(int ofHour, int ofMinute, int ofSecond, std::int64_t ofNanosecond = 0);
  /// Digits of a second beyond the ninth are dropped. Throws TOMLError `invalidDateTime`, or
  /// `invalidDateTime3` if the text is or has a date.
  static LocalTime parse(std::string_view text);

  /// 07:32:00, and behind it as many digits of the second as it takes: 07:32:00.5
  std::string text() const;

  std::uint8_t hour;         ///< 0 to 23
  std::uint8_t minute;       ///< 0 to 59
  std::uint8_t second;       ///< 0 to 59
  std::uint32_t nanosecond;  ///< 0 to 999999999

  bool operator==(const LocalTime&) const = default;
};

}  // namespace toml
