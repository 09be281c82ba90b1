#include "tests/toml/decoder/TaggedJson.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

#include "TOMLDecoder/TOMLArray.h"

namespace {

using toml::Entry;
using toml::OffsetDateTime;
using toml::ValueKind;

std::string quoted(std::string_view text) {
  std::string json = "\"";
  for (const char byte : text) {
    if (byte == '"' || byte == '\\') {
      json += {'\\', byte};
    } else if (static_cast<unsigned char>(byte) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
      json += escape;
    } else {
      json += byte;
    }
  }
  return json + "\"";
}

std::string tagged(const char* type, std::string_view value) {
  return std::string(R"({"type":")") + type + R"(","value":)" + quoted(value) + "}";
}

std::string floatText(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", number);
  return text;
}

std::string momentText(OffsetDateTime moment) {
  using Features = OffsetDateTime::Features;
  const std::uint8_t zero = moment.features.bits & (Features::uppercaseZ | Features::lowercaseZ);
  moment.features.bits = Features::uppercaseT | (zero != 0 ? Features::uppercaseZ : 0);
  return moment.text();
}

/// `container` is a TOMLTable or a TOMLArray, `place` what it is asked by.
template <typename Container, typename Place>
std::string taggedValue(const Container& container, const Place& place) {
  switch (container.valueKindOf(place)) {
    case ValueKind::string:
      return tagged("string", container.template value<std::string>(place));
    case ValueKind::boolean:
      return tagged("bool", container.template value<bool>(place) ? "true" : "false");
    case ValueKind::offsetDateTime:
      return tagged("datetime", momentText(container.template value<OffsetDateTime>(place)));
    case ValueKind::localDateTime:
      return tagged("datetime-local", container.template value<toml::LocalDateTime>(place).text());
    case ValueKind::localDate:
      return tagged("date-local", container.template value<toml::LocalDate>(place).text());
    case ValueKind::localTime:
      return tagged("time-local", container.template value<toml::LocalTime>(place).text());
    case ValueKind::floatingPoint:
      return tagged("float", floatText(container.template value<double>(place)));
    default:
      return tagged("integer", std::to_string(container.template value<std::int64_t>(place)));
  }
}

/// Writes tables and arrays; those that aren't at their end yet wait in a list.
class Writer {
 public:
  std::string text(const toml::TOMLTable& root) {
    open(root);
    while (!open_.empty()) {
      if (open_.back().next < open_.back().size()) {
        writeNext();
      } else {
        json_ += open_.back().table ? '}' : ']';
        open_.pop_back();
      }
    }
    return std::move(json_);
  }

 private:
  struct Open {
    std::size_t size() const { return table ? keys.size() : array->size(); }

    std::optional<toml::TOMLTable> table;
    std::optional<toml::TOMLArray> array;
    std::vector<std::string> keys;
    std::size_t next = 0;
  };

  void open(const toml::TOMLTable& table) {
    json_ += '{';
    open_.push_back({table, std::nullopt, table.keys()});
  }

  void open(const toml::TOMLArray& array) {
    json_ += '[';
    open_.push_back({std::nullopt, array, {}});
  }

  void writeNext() {
    Open& current = open_.back();
    const std::size_t place = current.next++;
    if (place > 0) json_ += ',';
    if (current.table) {
      json_ += quoted(current.keys[place]) + ":";
      const std::string key = current.keys[place];
      write(toml::TOMLTable(*current.table), key);
    } else {
      write(toml::TOMLArray(*current.array), place);
    }
  }

  template <typename Container, typename Place>
  void write(const Container& container, const Place& place) {
    switch (container.kindOf(place)) {
      case Entry::Kind::table:
        return open(container.table(place));
      case Entry::Kind::array:
        return open(container.array(place));
      default:
        json_ += taggedValue(container, place);
    }
  }

  std::string json_;
  std::vector<Open> open_;
};

}  // namespace

std::string taggedJson(const toml::TOMLTable& root) {
  return Writer().text(root);
}
