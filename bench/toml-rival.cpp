#include <toml++/toml.h>

#include "bench/ReadingTask.h"

namespace {

using bench::Checksum;

/// Reads in the way that costs the rival least: a reference to what it holds, without a copy.
template <class Container, class Place>
class Reader {
 public:
  explicit Reader(const Container& container) : container_(container) {}

  auto table(Place where) const;
  auto array(Place where) const;

  template <class T>
  const T& value(Place where) const {
    return container_.get(where)->template as<T>()->get();
  }

 private:
  const Container& container_;
};

using TableReader = Reader<toml::table, std::string_view>;
using ArrayReader = Reader<toml::array, std::size_t>;

template <class Container, class Place>
auto Reader<Container, Place>::table(Place where) const {
  return TableReader(*container_.get(where)->as_table());
}

template <class Container, class Place>
auto Reader<Container, Place>::array(Place where) const {
  return ArrayReader(*container_.get(where)->as_array());
}

struct Rival {
  /// The rival copies what it keeps of the text, so that the text needn't stay.
  using Parsed = toml::table;
  using Text = std::string;
  using OffsetDateTime = toml::date_time;
  using LocalDateTime = toml::date_time;
  using LocalDate = toml::date;
  using LocalTime = toml::time;

  static Parsed parse(std::string text) { return toml::parse(std::string_view(text)); }
  static TableReader root(const Parsed& parsed) { return TableReader(parsed); }

  static void addTo(Checksum& sum, const toml::date& date) { sum.addDate(date.year, date.month, date.day); }
  static void addTo(Checksum& sum, const toml::time& time) {
    sum.addTime(time.hour, time.minute, time.second, time.nanosecond);
  }
  static void addTo(Checksum& sum, const toml::date_time& moment) {
    addTo(sum, moment.date);
    addTo(sum, moment.time);
    if (moment.offset) sum.add(static_cast<std::uint64_t>(moment.offset->minutes));
  }
};

}  // namespace

int main(int count, char** values) {
  return bench::runReadingTask<Rival>(count, values);
}
