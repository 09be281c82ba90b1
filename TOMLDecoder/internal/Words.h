#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace toml {

/// Looks at eight bytes at a time, as https://graphics.stanford.edu/~seander/bithacks.html#ZeroInWord tells.
/// A mask has the top bit set of the first byte that was looked for; its bits after that byte mean nothing.
namespace Words {

static_assert(std::endian::native == std::endian::little);

constexpr std::uint64_t ones = 0x0101010101010101;
constexpr std::uint64_t tops = 0x8080808080808080;

inline std::uint64_t load(const char* at) {
  std::uint64_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

constexpr std::uint64_t bytesEqual(std::uint64_t word, char byte) {
  const std::uint64_t difference = word ^ (ones * static_cast<unsigned char>(byte));
  return (difference - ones) & ~difference & tops;
}

/// `limit` is at most 128.
constexpr std::uint64_t bytesBelow(std::uint64_t word, unsigned char limit) {
  return (word - ones * limit) & ~word & tops;
}

/// How many bytes stand before the first one of a mask that isn't zero.
constexpr int firstOf(std::uint64_t mask) {
  return std::countr_zero(mask) / 8;
}

}  // namespace Words

}  // namespace toml
