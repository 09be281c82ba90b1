#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TOMLDecoder/LocalDate.h"
#include "TOMLDecoder/LocalTime.h"
#include "TOMLDecoder/OffsetDateTime.h"

namespace toml {

/// Reads dates and times from the front of a text and takes away what it has read. All throw TOMLError
/// `invalidDateTime`, without a line, with the rule that the text breaks.
namespace DateTimeScanner {

/// What a date-time text holds.
struct Parts {
  std::optional<LocalDate> date;
  std::optional<LocalTime> time;
  std::optional<int> offset;  ///< minutes
  OffsetDateTime::Features features{0};
};

/// The whole text; nothing may follow.
Parts scan(std::string_view text);

/// As many digits as there are, at most `most`; nothing if there are fewer than `least`.
std::optional<int> scanDigits(std::string_view& rest, std::size_t least, std::size_t most);
LocalDate scanDate(std::string_view& rest);
LocalTime scanTime(std::string_view& rest);
/// Minutes; 0 for Z and z. Nothing, and nothing taken, if no offset begins here.
std::optional<int> scanTimezoneOffset(std::string_view& rest, OffsetDateTime::Features& features);

/// The rule that a date breaks, or nothing.
std::optional<std::string> faultOfDate(int year, int month, int day);
std::optional<std::string> faultOfTime(int hour, int minute, int second);

/// How a token begins that can only be meant as a date or a time.
bool looksLikeDateTime(std::string_view text);

}  // namespace DateTimeScanner

}  // namespace toml
