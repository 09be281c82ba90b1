#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Clock.h"

namespace quarn::DateText {

/// "2026-01-31T09:05:00Z": UTC, whole seconds, the fraction cut off.
std::string iso8601(Moment moment);
/// Exactly the form of `iso8601`; nothing for any other text, a fraction of a second included, or for
/// a day or time that doesn't exist or that a moment doesn't reach.
std::optional<Moment> parsingISO8601(std::string_view text);
/// "2026-01-31-090500" in the local time zone; nothing for any other text.
std::optional<Moment> parsingLocalDashed(std::string_view text);
/// Whole seconds since 1970, truncated.
long long secondsSince1970(Moment moment);
/// Seconds and fractions since the first of January 2001 UTC, as a Mac counts them. A number of today tells
/// moments apart that are an eighth of a microsecond from each other.
double secondsSince2001(Moment moment);
/// The nearest moment; nothing for a number that a moment doesn't reach.
std::optional<Moment> fromSecondsSince2001(double seconds);

}  // namespace quarn::DateText
