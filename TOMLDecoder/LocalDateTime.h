#pragma once

#include <string>
#include <string_view>

#include "TOMLDecoder/LocalDate.h"
#include "TOMLDecoder/LocalTime.h"

namespace toml {

/// A day and a time, without a place.
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

}  // namespace toml
