#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "TOMLDecoder/LocalDate.h"
#include "TOMLDecoder/LocalTime.h"

namespace toml {

/// A moment: a day and a time, and how far they are from those of Greenwich.
struct OffsetDateTime {
  /// How the text was written: which letter stood for an offset of zero, and which between date and time.
  /// Without a letter there stood an offset in digits, and a blank.
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

  /// 1979-05-27T07:32:00Z, or whichever form the features tell.
  std::string text() const;

  LocalDate date;
  LocalTime time;
  std::int16_t offset;
  Features features;

  bool operator==(const OffsetDateTime&) const = default;
};

}  // namespace toml
