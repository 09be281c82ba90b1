#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The dates and times of TOML (https://toml.io/en/v1.0.0#offset-date-time and the three sections after it),
// and the moment that one of them can be turned into.
namespace toml {

/// A day of the calendar, without a time and a time zone.
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

/// A time of the day, without a day and a time zone.
struct LocalTime {
  /// Throws TOMLError `invalidDateTimeComponents` if there is no such time.
  LocalTime(int ofHour, int ofMinute, int ofSecond, std::int64_t ofNanosecond = 0);
  /// Digits of a second beyond the ninth are dropped. Throws TOMLError `invalidDateTime`, or
  /// `invalidDateTime3` if the text is or has a date.
  static LocalTime parse(std::string_view text);

  /// 07:32:00, followed by as many digits of the second as it needs: 07:32:00.5
  std::string text() const;

  std::uint8_t hour;         ///< 0 to 23
  std::uint8_t minute;       ///< 0 to 59
  std::uint8_t second;       ///< 0 to 59
  std::uint32_t nanosecond;  ///< 0 to 999999999

  bool operator==(const LocalTime&) const = default;
};

/// A day and a time, without a time zone.
struct LocalDateTime {
  LocalDateTime(LocalDate ofDate, LocalTime ofTime) : date(ofDate), time(ofTime) {}
  /// Throws TOMLError `invalidDateTime`, or `invalidDateTime3` if the text is a date or a time alone, or
  /// has an offset.
  static LocalDateTime parse(std::string_view text);

  /// 1979-05-27T07:32:00
  std::string text() const { return date.text() + "T" + time.text(); }

  LocalDate date;
  LocalTime time;

  bool operator==(const LocalDateTime&) const = default;
};

/// A day and a time, and how many minutes they are ahead of UTC.
struct OffsetDateTime {
  /// How the text was written: which letter stood for an offset of zero, and which between date and time.
  /// Where no letter is noted, the offset was written in digits, and a space stood between date and time.
  struct Features {
    static constexpr std::uint8_t lowercaseZ = 1;
    static constexpr std::uint8_t uppercaseZ = 2;
    static constexpr std::uint8_t lowercaseT = 4;
    static constexpr std::uint8_t uppercaseT = 8;

    bool contains(std::uint8_t member) const { return (bits & member) != 0; }

    std::uint8_t bits = uppercaseT;

    bool operator==(const Features&) const = default;
  };

  /// The offset is in minutes; its hours are at most 24. Throws TOMLError `invalidDateTimeComponents`
  /// beyond that, or if the features have two letters for one place or a Z for an offset that isn't zero.
  OffsetDateTime(LocalDate ofDate, LocalTime ofTime, int ofOffset, Features written);
  OffsetDateTime(LocalDate ofDate, LocalTime ofTime, int ofOffset)
      : OffsetDateTime(ofDate, ofTime, ofOffset, {}) {}
  /// Throws TOMLError `invalidDateTime`, or `invalidDateTime3` if the text has no date, time or offset.
  static OffsetDateTime parse(std::string_view text);

  /// 1979-05-27T07:32:00Z, in the form that the features tell.
  std::string text() const;

  LocalDate date;
  LocalTime time;
  std::int16_t offset;
  Features features;

  bool operator==(const OffsetDateTime&) const = default;
};

/// A moment, counted from the start of 1970 in UTC. Decoding makes it of any of the dates and times above but
/// a time alone, and of a number of seconds; see `DateStrategy` and `TimeIntervalStrategy`.
struct Date {
  std::int64_t seconds = 0;
  std::uint32_t nanosecond = 0;  ///< 0 to 999999999, always added to `seconds`, also where those are negative

  bool operator==(const Date&) const = default;
};

}  // namespace toml
