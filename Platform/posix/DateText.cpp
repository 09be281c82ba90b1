#include "Platform/DateText.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>

namespace quarn::DateText {

namespace {

using namespace std::chrono;

constexpr sys_seconds startOf2001 = sys_days(year(2001) / January / 1);

struct Fields {
  int year, month, day, hour, minute, second;
};

/// Parses a text that matches `pattern` character for character; the letters YMDhms stand for digits.
std::optional<Fields> fields(std::string_view text, std::string_view pattern) {
  if (text.size() != pattern.size()) return std::nullopt;
  constexpr std::string_view letters = "YMDhms";
  std::array<int, letters.size()> numbers{};
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto field = letters.find(pattern[i]);
    if (field == std::string_view::npos) {
      if (text[i] != pattern[i]) return std::nullopt;
    } else {
      if (text[i] < '0' || text[i] > '9') return std::nullopt;
      numbers[field] = numbers[field] * 10 + (text[i] - '0');
    }
  }
  return Fields{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
}

year_month_day dateOf(const Fields& f) {
  return year(f.year) / month(static_cast<unsigned>(f.month)) / day(static_cast<unsigned>(f.day));
}

bool exists(const Fields& f) {
  return dateOf(f).ok() && f.hour < 24 && f.minute < 60 && f.second < 60;
}

/// Converts seconds to a moment. A moment has a finer unit than seconds, so its range is smaller than that of
/// four-digit years.
std::optional<Moment> moment(seconds sinceEpoch) {
  constexpr auto furthest = duration_cast<seconds>(Moment::duration::max());
  if (sinceEpoch > furthest || sinceEpoch < -furthest) return std::nullopt;
  return Moment(duration_cast<Moment::duration>(sinceEpoch));
}

}  // namespace

std::string iso8601(Moment moment) {
  const auto whole = floor<seconds>(moment);
  const auto midnight = floor<days>(whole);
  const year_month_day date(midnight);
  const hh_mm_ss time(whole - midnight);
  // Larger than the text ever gets: compilers warn about a shorter buffer, since an int may have more digits.
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text.data();
}

std::string plain(Moment moment) {
  std::string text = iso8601(moment);
  text.replace(text.find('T'), 1, " ");
  text.replace(text.find('Z'), 1, " +0000");
  return text;
}

std::optional<Moment> parsingISO8601(std::string_view text) {
  const auto f = fields(text, "YYYY-MM-DDThh:mm:ssZ");
  if (!f || !exists(*f)) return std::nullopt;
  const auto midnight = sys_days(dateOf(*f)).time_since_epoch();
  return moment(midnight + hours(f->hour) + minutes(f->minute) + seconds(f->second));
}

std::optional<Moment> parsingLocalDashed(std::string_view text) {
  const auto f = fields(text, "YYYY-MM-DD-hhmmss");
  if (!f || !exists(*f)) return std::nullopt;
  std::tm local{};
  local.tm_year = f->year - 1900;
  local.tm_mon = f->month - 1;
  local.tm_mday = f->day;
  local.tm_hour = f->hour;
  local.tm_min = f->minute;
  local.tm_sec = f->second;
  // Let mktime(3) find out whether daylight saving time applies.
  local.tm_isdst = -1;
  const auto sinceEpoch = std::mktime(&local);
  // mktime(3) moves a time that the clocks skip to one that they show.
  const bool isShownByClocks = local.tm_hour == f->hour && local.tm_min == f->minute;
  if (!isShownByClocks) return std::nullopt;
  return moment(seconds(sinceEpoch));
}

long long secondsSince1970(Moment moment) {
  return duration_cast<seconds>(moment.time_since_epoch()).count();
}

double secondsSince2001(Moment moment) {
  // The seconds and the fraction are converted separately. Converting the whole count at once would round
  // twice.
  const auto whole = floor<seconds>(moment);
  return static_cast<double>((whole - startOf2001).count()) + duration<double>(moment - whole).count();
}

std::optional<Moment> fromSecondsSince2001(double number) {
  constexpr double furthest = 1e15;  // beyond any moment, and whole seconds up to here are exact in a double
  if (!(std::abs(number) < furthest)) return std::nullopt;
  const double whole = std::floor(number);
  const auto sinceEpoch = startOf2001.time_since_epoch() + seconds(static_cast<long long>(whole));
  const auto start = moment(sinceEpoch);
  // The fraction must not leave the range either.
  if (!start || !moment(sinceEpoch + seconds(1))) return std::nullopt;
  return *start + round<Moment::duration>(duration<double>(number - whole));
}

}  // namespace quarn::DateText
