#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace bench {

/// Sums up values in their order, every byte of them; cheap beside the reading of a value.
class Checksum {
 public:
  void add(std::uint64_t word) {
    sum_ = (sum_ ^ word) * 0x9E3779B97F4A7C15;
    sum_ ^= sum_ >> 32;
  }

  void addNumber(double number) { add(std::bit_cast<std::uint64_t>(number)); }

  void addText(std::string_view text) {
    add(text.size());
    while (text.size() >= sizeof(std::uint64_t)) {
      add(wordOf(text.substr(0, sizeof(std::uint64_t))));
      text.remove_prefix(sizeof(std::uint64_t));
    }
    add(wordOf(text));
  }

  void addDate(int year, int month, int day) {
    add(static_cast<std::uint64_t>((year * 16 + month) * 32 + day));
  }

  void addTime(int hour, int minute, int second, std::uint32_t nanosecond) {
    add(static_cast<std::uint64_t>((hour * 64 + minute) * 64 + second) << 32 | nanosecond);
  }

  std::uint64_t sum() const { return sum_; }

 private:
  static std::uint64_t wordOf(std::string_view text) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), text.size());
    return word;
  }

  std::uint64_t sum_ = 0;
};

}  // namespace bench
