#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TOMLDecoder/DateTime.h"

namespace toml {

/// Reads dates and times (RFC 3339, as TOML takes it over) from the front of a text, and removes what it has
/// read. All throw TOMLError `invalidDateTime`, without a line, with the rule that the text breaks.
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

/// As many digits as there are, at most `most`; empty if there are fewer than `least`.
std::optional<int> scanDigits(std::string_view& rest, std::size_t least, std::size_t most);
LocalDate scanDate(std::string_view& rest);
LocalTime scanTime(std::string_view& rest);
/// Minutes; 0 for Z and z. Empty, with nothing removed, if no offset begins here.
std::optional<int> scanTimezoneOffset(std::string_view& rest, OffsetDateTime::Features& features);

/// The rule that a date breaks; empty if it breaks none.
std::optional<std::string> faultOfDate(int year, int month, int day);
std::optional<std::string> faultOfTime(int hour, int minute, int second);

/// Whether a token begins in a way that only a date or a time can.
bool looksLikeDateTime(std::string_view text);

}  // namespace DateTimeScanner

}  // namespace toml
