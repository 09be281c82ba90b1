#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Clock.h"

namespace quarn::DateText {

/// Returns a text such as "2026-01-31T09:05:00Z": UTC, whole seconds, the fraction cut off.
std::string iso8601(Moment moment);
/// Returns a text such as "2026-01-31 09:05:00 +0000", as a Mac describes a date by default: UTC, whole
/// seconds, the fraction cut off.
std::string plain(Moment moment);
/// Returns a text such as "20260131_090500" in the local time zone. On a Mac its form follows the user's
/// settings: another calendar gives other years, another region other digits, and a forced 12-hour clock adds
/// a space and letters (NSDateFormatter).
std::string compactLocal(Moment moment);
/// Parses exactly the form that `iso8601` writes. Returns nothing for any other text (one with a fraction of
/// a second included), for a day or time that doesn't exist, and for one outside the range of `Moment`.
std::optional<Moment> parsingISO8601(std::string_view text);
/// Parses a text such as "2026-01-31-090500" in the local time zone. Returns nothing for any other text.
std::optional<Moment> parsingLocalDashed(std::string_view text);
/// Returns whole seconds since 1970, truncated towards zero.
long long secondsSince1970(Moment moment);
/// Returns seconds since 1 January 2001 UTC with fractions, as a Mac counts them. For dates of today a double
/// resolves about an eighth of a microsecond.
double secondsSince2001(Moment moment);
/// Returns the nearest moment, or nothing for a number outside the range of `Moment`.
std::optional<Moment> fromSecondsSince2001(double seconds);

}  // namespace quarn::DateText
