#include "TOMLDecoder/TOMLArray.h"
#include "TOMLDecoder/TOMLTable.h"
#include "bench/ReadingTask.h"

namespace {

using bench::Checksum;

struct Subject {
  using Parsed = toml::TOMLTable;
  using Text = std::string;
  using OffsetDateTime = toml::OffsetDateTime;
  using LocalDateTime = toml::LocalDateTime;
  using LocalDate = toml::LocalDate;
  using LocalTime = toml::LocalTime;

  static Parsed parse(std::string text) { return toml::TOMLTable(std::move(text)); }
  static const Parsed& root(const Parsed& parsed) { return parsed; }

  static void addTo(Checksum& sum, const LocalDate& date) { sum.addDate(date.year, date.month, date.day); }
  static void addTo(Checksum& sum, const LocalTime& time) {
    sum.addTime(time.hour, time.minute, time.second, time.nanosecond);
  }
  static void addTo(Checksum& sum, const LocalDateTime& moment) {
    addTo(sum, moment.date);
    addTo(sum, moment.time);
  }
  static void addTo(Checksum& sum, const OffsetDateTime& moment) {
    addTo(sum, moment.date);
    addTo(sum, moment.time);
    sum.add(static_cast<std::uint64_t>(moment.offset));
  }
};

}  // namespace

int main(int count, char** values) {
  return bench::runReadingTask<Subject>(count, values);
}
